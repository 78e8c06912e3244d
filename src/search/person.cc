#include "search/person.h"

#include <cstdlib>
#include <cstring>

namespace zv {

void ZVPerson::Buffer::release() {
  std::free(bytes_);
  bytes_ = nullptr;
  size_ = 0;
}

void ZVPerson::Buffer::assign(std::string_view text) {
  release();
  // A failed allocation leaves the field null; readers treat it as absent.
  auto* copy = static_cast<char*>(std::malloc(text.size() + 1));
  if (!copy) return;
  if (!text.empty()) std::memcpy(copy, text.data(), text.size());
  copy[text.size()] = '\0';
  bytes_ = copy;
  size_ = text.size();
}

void ZVPerson::Buffer::adopt(char* bytes, size_t size) {
  release();
  bytes_ = bytes;
  size_ = bytes ? size : 0;
}

std::string ZVPerson::Buffer::str() const {
  if (!bytes_) return "";
  std::string_view view(bytes_, size_);
  return isValidUtf8(view) ? std::string(view) : std::string();
}

void ZVPerson::setPhoneNumber(std::string_view text) {
  auto* copy = static_cast<char*>(std::malloc(text.size() + 1));
  size_t write = 0;
  if (copy) {
    for (unsigned char c : text)
      if (isDialable(c)) copy[write++] = static_cast<char>(c);
    copy[write] = '\0';
  }
  phoneNumber_.adopt(copy, write);
}

bool isValidUtf8(std::string_view text) {
  const auto* p = reinterpret_cast<const unsigned char*>(text.data());
  const auto* end = p + text.size();
  while (p < end) {
    unsigned char c = *p;
    if (c < 0x80) {
      ++p;
      continue;
    }
    int extra;
    uint32_t cp;
    if (c >= 0xC2 && c <= 0xDF) {
      extra = 1;
      cp = c & 0x1F;
    } else if (c >= 0xE0 && c <= 0xEF) {
      extra = 2;
      cp = c & 0x0F;
    } else if (c >= 0xF0 && c <= 0xF4) {
      extra = 3;
      cp = c & 0x07;
    } else {
      return false;
    }
    if (end - p <= extra) return false;
    for (int i = 1; i <= extra; ++i) {
      if ((p[i] & 0xC0) != 0x80) return false;
      cp = (cp << 6) | (p[i] & 0x3F);
    }
    if ((extra == 2 && cp < 0x800) || (extra == 3 && cp < 0x10000) ||
        cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF))
      return false;
    p += extra + 1;
  }
  return true;
}

}  // namespace zv
