// Highlight ranges for a result row. Name ranges are in the display name's
// UTF-16 units (how the views index text); number ranges in bytes of the
// number string.
#include <algorithm>
#include <cstring>
#include <string>

#include "platform/utf8.h"
#include "search/searcher.h"

namespace zv {

namespace {

int64_t find(const char* form, std::string_view key) {
  if (!form) return -1;
  const void* hit = memmem(form, std::strlen(form), key.data(), key.size());
  return hit ? static_cast<const char*>(hit) - form : -1;
}

bool isDigit(char c) { return c >= '0' && c <= '9'; }

}  // namespace

ZVRange ZVSearcher::getShiftSpaceNameRange(ZVRange range,
                                           std::string_view name) {
  std::u16string units = toUtf16(name);
  for (size_t i = 0; i < units.size(); ++i) {
    if (units[i] != u' ') continue;
    const auto at = static_cast<int64_t>(i);
    if (at <= range.location)
      ++range.location;
    else if (at > range.location + range.length)
      break;
    else
      ++range.length;  // a space right after the range joins it
  }
  return range;
}

ZVRange ZVSearcher::getShiftSpaceEnglishNameRange(ZVRange range,
                                                  std::string_view name) {
  std::u16string units = toUtf16(name);
  int64_t skip = range.location;
  int64_t cover = range.length;
  ZVRange out;
  for (size_t i = 0; i < units.size(); ++i) {
    if (units[i] != u' ') continue;
    const auto at = static_cast<int64_t>(i);
    if (skip > 0) {
      // The highlight starts at the space before its first word.
      if (--skip == 0) out.location = at;
    } else if (cover > 0) {
      if (--cover == 0) {
        out.length = at - out.location;
        return out;
      }
    }
  }
  if (cover > 0) out.length = static_cast<int64_t>(units.size()) - out.location;
  return out;
}

ZVRange ZVSearcher::getHighlightNameRange(std::string_view name,
                                          std::string_view inputNumber,
                                          const ZVPerson* person) {
  if (!person) return {};
  const auto keyLength = static_cast<int64_t>(inputNumber.size());
  const int32_t priority = person->priority();

  if (priority & ZVPerson::kByInitials) {
    int64_t o = find(person->nameJianPin(), inputNumber);
    if (o < 0) return {};
    // The match is cut at the last character, whose whole reading J holds.
    int64_t length =
        keyLength - std::max<int64_t>(o + keyLength - person->nameLength(), 0);
    return getShiftSpaceNameRange({o, std::max<int64_t>(length, 0)}, name);
  }
  if (priority & ZVPerson::kByReading) {
    int64_t o = find(person->namePinYin(), inputNumber);
    const char* lengths = person->nameFirst();
    if (o < 0 || !lengths) return {};
    // Walk the characters' reading lengths to find the characters that hold
    // the first and the last matched byte of the full reading.
    int64_t end = 0;
    int64_t start = -1;
    for (int64_t i = 0; lengths[i]; ++i) {
      end += static_cast<unsigned char>(lengths[i]) - '0';
      if (start < 0 && end > o) start = i;
      if (start >= 0 && end >= o + keyLength)
        return getShiftSpaceNameRange({start, i - start + 1}, name);
    }
    if (start < 0) return {};
    return getShiftSpaceNameRange({start, 0}, name);
  }
  if (priority & ZVPerson::kByWords) {
    int64_t o = find(person->nameEnglish(), inputNumber);
    if (o < 0) return {};
    return getShiftSpaceEnglishNameRange({o, keyLength}, name);
  }
  return {};
}

ZVRange ZVSearcher::getHighlightNumberRange(std::string_view number,
                                            std::string_view inputNumber) {
  if (number.empty() || inputNumber.empty() ||
      inputNumber.size() >= number.size())
    return {};
  for (size_t s = 0; s < number.size(); ++s) {
    if (!isDigit(number[s])) continue;
    size_t j = s;
    size_t k = 0;
    for (; k < inputNumber.size(); ++k, ++j) {
      while (j < number.size() && !isDigit(number[j])) ++j;
      if (j == number.size()) return {};
      if (number[j] != inputNumber[k]) break;
    }
    if (k < inputNumber.size()) continue;
    if (s == 0 && j == number.size()) return {};
    return {static_cast<int64_t>(s), static_cast<int64_t>(j - s)};
  }
  return {};
}

}  // namespace zv
