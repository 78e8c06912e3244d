// Eight bytes at a time: the word tests behind the cache reader's field
// splitting and the search's key scans.
//
// A word is eight bytes loaded from any address (unaligned, lowest address
// in the lowest byte); firstByte() turns a mask of flagged bytes back into
// the lowest flagged position. Callers keep the bytes they load readable.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace zv::words {

static_assert(std::endian::native == std::endian::little,
              "words hold the lowest address in their lowest byte");

inline constexpr uint64_t kOnes = 0x0101010101010101ull;
inline constexpr uint64_t kHighs = 0x8080808080808080ull;

inline uint64_t load(const char* p) {
  uint64_t v;
  std::memcpy(&v, p, sizeof v);
  return v;
}

// `c` in every byte.
constexpr uint64_t repeat(unsigned char c) { return kOnes * c; }

// 0x80 in every zero byte of `word`, exactly.
constexpr uint64_t zeroBytes(uint64_t word) {
  constexpr uint64_t kLow7 = ~kHighs;
  return ~(((word & kLow7) + kLow7) | word | kLow7);
}

// 0x80 in every zero byte of `word`, and possibly in some bytes above the
// lowest zero byte (a borrow runs upward); 0 exactly when no byte is zero.
// Cheaper than zeroBytes() where a flagged byte is confirmed anyway.
constexpr uint64_t zeroBytesAndAbove(uint64_t word) {
  return (word - kOnes) & ~word & kHighs;
}

// The position of the lowest flagged byte of a non-zero mask.
constexpr size_t firstByte(uint64_t mask) {
  return static_cast<size_t>(std::countr_zero(mask)) / 8;
}

}  // namespace zv::words
