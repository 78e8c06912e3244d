#include "platform/ui/jpeg_tables.h"

#include <cstddef>
#include <cstdint>

namespace zv::ui {
namespace {

constexpr unsigned kHuffmanTable = 0xC4;
constexpr unsigned kEndOfImage = 0xD9;
constexpr size_t kMaxCodes = 256;

}  // namespace

bool jpegHuffmanTablesFit(std::string_view b) {
  // Past the end reads as 0, as the decoder's own reader does.
  auto byte = [&](size_t i) -> unsigned {
    return i < b.size() ? static_cast<uint8_t>(b[i]) : 0;
  };
  if (byte(0) != 0xFF || byte(1) != 0xD8) return true;
  size_t at = 2;
  while (at + 1 < b.size()) {
    // Segments are skipped by their length; anything else (entropy-coded
    // data, garbage) is searched for the next marker: 0xFF followed by
    // neither a stuffed 0x00, a restart marker nor more fill bytes.
    if (byte(at) != 0xFF) {
      ++at;
      continue;
    }
    const unsigned marker = byte(at + 1);
    if (marker == 0x00 || marker == 0xFF ||
        (marker >= 0xD0 && marker <= 0xD7) || marker == 0xD8 ||
        marker == 0x01) {
      ++at;
      continue;
    }
    if (marker == kEndOfImage) return true;
    const size_t length = byte(at + 2) << 8 | byte(at + 3);
    if (marker == kHuffmanTable) {
      // One or more tables: a class/id byte, 16 counts, then the codes'
      // values. The decoder reads them on past the segment's end if the
      // counts say so, and so does this.
      size_t p = at + 4;
      long left = static_cast<long>(length) - 2;
      while (left > 0) {
        size_t codes = 0;
        for (size_t i = 1; i <= 16; ++i) codes += byte(p + i);
        if (codes > kMaxCodes) return false;
        p += 17 + codes;
        left -= static_cast<long>(17 + codes);
      }
    }
    at += 2 + length;
  }
  return true;
}

}  // namespace zv::ui
