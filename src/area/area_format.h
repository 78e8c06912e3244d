// Layout of the binary area database, shared by the reader (area_file.h)
// and the compiler (area_compiler.h). All integers are little-endian.
//
// A 100-byte header points at four blocks: the key index (sorted u16 keys,
// "1" followed by the first 1 to 4 digits of a national number), the range
// table (one 64-bit entry per key: lowest sub-key, highest sub-key, a
// long-form-only bit, base record index), the record table (u32 per record:
// location text offset | line-type text offset << 16) and the string block
// (NUL-terminated texts; offset 0 means "no text").
#pragma once

#include <cstddef>
#include <cstdint>

namespace zv::areafmt {

inline constexpr size_t kHeaderSize = 100;
inline constexpr uint16_t kMagic = 0x565A;    // "ZV"
inline constexpr uint16_t kVersionLimit = 3;  // versions 0 to 2 are read

// Header field offsets.
inline constexpr size_t kMagicAt = 0;
inline constexpr size_t kVersionAt = 2;
inline constexpr size_t kSeparatorAt = 4;  // 36 bytes
inline constexpr size_t kAccessAt = 40;    // 5 bytes each from here on
inline constexpr size_t kAccess2At = 45;
inline constexpr size_t kCountryAt = 50;
inline constexpr size_t kTrunkAt = 55;
inline constexpr size_t kMinDigitsAt = 60;
inline constexpr size_t kMaxDigitsAt = 62;
inline constexpr size_t kKeyIndexAt = 68;  // offset, then size, per block
inline constexpr size_t kRangeTableAt = 76;
inline constexpr size_t kStringBlockAt = 84;
inline constexpr size_t kRecordTableAt = 92;

inline constexpr size_t kSeparatorWidth = 36;
inline constexpr size_t kPrefixWidth = 5;  // four digits and a NUL

inline constexpr size_t kRangeEntrySize = 8;
inline constexpr size_t kRecordSize = 4;

// A line-type half of kLengthBound or above marks a length-bound record:
// the location applies only to numbers of exactly (half ^ 0xFFFF) digits.
inline constexpr uint16_t kLengthBound = 0xFFF7;

// zvarea_get flags.
inline constexpr int kWantName = 1;
inline constexpr int kWantType = 2;
inline constexpr int kWantAlone = 4;

inline uint16_t readU16(const uint8_t* p) { return p[0] | (p[1] << 8); }
inline uint32_t readU32(const uint8_t* p) {
  return uint32_t(p[0]) | (uint32_t(p[1]) << 8) | (uint32_t(p[2]) << 16) |
         (uint32_t(p[3]) << 24);
}
inline uint64_t readU64(const uint8_t* p) {
  return uint64_t(readU32(p)) | (uint64_t(readU32(p + 4)) << 32);
}

}  // namespace zv::areafmt
