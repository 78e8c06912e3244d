#include "search/searcher_encode.h"

#include <algorithm>

#include "core/number_utils.h"

namespace zv {

namespace {

// Forms stop growing near 255 bytes, as the fixed buffers they are stored
// from allow.
constexpr size_t kFormLimit = 255;
constexpr size_t kStopAt = 254;
// Name parts are cut to this many bytes.
constexpr size_t kNameLimit = 255;

// The length digit of a reading. Readings are meant to be at most 9 bytes;
// a longer one still gets a single non-NUL byte, so F stays one byte per
// character and can never end early.
char lengthDigit(size_t length) {
  return static_cast<char>('0' + std::min<size_t>(length, 255 - '0'));
}

}  // namespace

void encodeName(std::string_view name, const T9Table* table, EncodedName& out) {
  std::string& J = out.jianPin;
  std::string& P = out.pinYin;
  std::string& E = out.english;
  std::string& F = out.first;
  J.clear();
  P.clear();
  E.clear();
  F.clear();
  bool wordStart = true;
  int32_t position = 1;
  int32_t lastOutput = 0;

  size_t i = 0;
  while (i < name.size()) {
    std::string_view c = t9CharacterAt(name, i);
    i += c.size();
    const bool last = i >= name.size();

    const std::string* reading = table ? table->lookup(c) : nullptr;
    if (reading) {
      const std::string& r = *reading;
      if (P.size() + r.size() < kFormLimit) P += r;
      F += lengthDigit(r.size());
      if (!last) {
        if (!r.empty()) {
          J += r[0];
          if (wordStart) E += r[0];
        }
      } else {
        if (J.size() + r.size() < kFormLimit) J += r;
        if (wordStart && E.size() + r.size() < kFormLimit) E += r;
      }
      lastOutput = position;
      wordStart = false;
    } else if (c.size() > 1) {
      J += '*';
      P += '*';
      E += '*';
      F += '1';
    } else {
      unsigned char b = static_cast<unsigned char>(c[0]);
      char d = keypadLetter(b);
      if (!d && isDialable(static_cast<char>(b))) d = static_cast<char>(b);
      if (d) {
        J += d;
        P += d;
        F += '1';
        if (wordStart) E += d;
        lastOutput = position;
        wordStart = false;
      } else if (b == ' ') {
        // Spaces only separate words: no output, no position.
        wordStart = true;
        if (E.size() >= kStopAt || P.size() >= kStopAt || F.size() >= kStopAt)
          break;
        continue;
      } else {
        J += '*';
        P += '*';
        E += '*';
        F += '1';
      }
    }
    if (E.size() >= kStopAt || P.size() >= kStopAt || F.size() >= kStopAt)
      break;
    ++position;
    if (J.size() >= kStopAt) break;
  }
  out.nameLength = lastOutput;
}

std::string composeDisplayName(std::string_view first, std::string_view last,
                               const std::string* organization,
                               bool lastNameFirst) {
  std::string_view a = lastNameFirst ? last : first;
  std::string_view b = lastNameFirst ? first : last;
  const size_t spaceBetween = utf8CharCount(a) + utf8CharCount(b);
  std::string_view aCut = a.substr(0, std::min(a.size(), kNameLimit));
  std::string_view bCut =
      b.substr(0, std::min(b.size(), kNameLimit - aCut.size()));

  std::string out;
  out.reserve(kNameLimit + 3);
  out += aCut;
  // Two one-character parts (a Chinese family and given name) read as one
  // word; longer parts are separated.
  if (!aCut.empty() && !bCut.empty() && spaceBetween >= 4) out += ' ';
  out += bCut;

  if (organization) {
    const size_t used = aCut.size() + bCut.size();
    std::string_view org(*organization);
    org = org.substr(0, std::min(org.size(), kNameLimit - used));
    if (!org.empty()) {
      if (!out.empty()) out += ' ';
      out += org;
    }
  }
  return out;
}

}  // namespace zv
