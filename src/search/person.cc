#include "search/person.h"

#include <cstdlib>
#include <cstring>

namespace zv {

void ZVPerson::releaseBlock() {
  if (block_ != inline_) std::free(block_);
  block_ = inline_;
}

void ZVPerson::build(const std::string_view (&texts)[kFields], uint32_t present,
                     bool filterNumber) {
  size_t total = 0;
  for (int f = 0; f < kFields; ++f)
    if ((present >> f) & 1) total += texts[f].size() + 1;
  // Composed apart from the old block, which the texts may point into; a
  // person without texts yet (the loaders' case) is written in place.
  char local[kInlineBytes];
  char* out = present_ == 0 && block_ == inline_ ? inline_ : local;
  if (total + kReadSlack > kInlineBytes) {
    out = static_cast<char*>(std::malloc(total + kReadSlack));
    // A failed allocation leaves the changed fields null; readers treat
    // them as absent.
    if (!out) {
      present_ &= ~present;
      return;
    }
  }
  uint32_t offset[kFields] = {}, size[kFields] = {};
  size_t write = 0;
  for (int f = 0; f < kFields; ++f) {
    if (!((present >> f) & 1)) continue;
    offset[f] = static_cast<uint32_t>(write);
    if (f == kNumber && filterNumber) {
      for (unsigned char c : texts[f])
        if (isDialable(static_cast<char>(c)))
          out[write++] = static_cast<char>(c);
    } else if (!texts[f].empty()) {
      std::memcpy(out + write, texts[f].data(), texts[f].size());
      write += texts[f].size();
    }
    size[f] = static_cast<uint32_t>(write - offset[f]);
    out[write++] = '\0';
  }
  std::memset(out + write, 0, kReadSlack);
  write += kReadSlack;
  if (out != inline_) {
    releaseBlock();
    if (out == local) {
      std::memcpy(inline_, local, write);
    } else {
      block_ = out;
    }
  }
  std::memcpy(offset_, offset, sizeof offset_);
  std::memcpy(size_, size, sizeof size_);
  present_ = present;
}

void ZVPerson::assign(Field field, std::string_view text, bool filter) {
  std::string_view texts[kFields];
  for (int f = 0; f < kFields; ++f)
    if ((present_ >> f) & 1) texts[f] = {block_ + offset_[f], size_[f]};
  texts[field] = text;
  build(texts, present_ | (1u << field), filter);
}

void ZVPerson::setTexts(std::string_view phoneNumber, std::string_view jianPin,
                        std::string_view english, std::string_view pinYin,
                        std::string_view first, std::string_view full,
                        bool hasNumber) {
  std::string_view texts[kFields];
  texts[kNumber] = phoneNumber;
  texts[kJianPin] = jianPin;
  texts[kEnglish] = english;
  texts[kPinYin] = pinYin;
  texts[kFirst] = first;
  texts[kFull] = full;
  uint32_t present = (1u << kFields) - 1;
  if (!hasNumber) present &= ~(1u << kNumber);
  build(texts, present, true);
}

std::string ZVPerson::str(Field f) const {
  if (!((present_ >> f) & 1)) return "";
  std::string_view view(block_ + offset_[f], size_[f]);
  return isValidUtf8(view) ? std::string(view) : std::string();
}

void ZVPerson::setPhoneNumber(std::string_view text) {
  assign(kNumber, text, true);
}

}  // namespace zv
