#include "core/number_utils.h"

#include <algorithm>

#include "platform/phone_number_class.h"
#include "platform/runtime/message.h"
#include "platform/runtime/object.h"
#include "platform/utf8.h"

namespace zv {
namespace {

// The empty text is neither a prefix, a suffix nor a part of another text.
bool hasPrefix(std::string_view s, std::string_view p) {
  return !p.empty() && s.starts_with(p);
}
bool hasSuffix(std::string_view s, std::string_view p) {
  return !p.empty() && s.ends_with(p);
}
bool contains(std::string_view s, std::string_view p) {
  return !p.empty() && s.find(p) != std::string_view::npos;
}

std::string withoutStars(std::string_view p) {
  std::string out(p);
  std::erase(out, '*');
  return out;
}

// A "#" pattern: a prefix match where "#" stands for any one character.
// Positions are characters (UTF-16 units), as the platform compares them;
// `k` is a keypad string, so it is ASCII and no wider than `p` here. A
// character outside ASCII in `p` never equals a character of `k`.
bool matchesHashPattern(std::string_view p, std::string_view k) {
  size_t i = 0;  // position in k
  for (size_t at = 0; at < p.size(); ++i) {
    const unsigned char c = static_cast<unsigned char>(p[at]);
    if (c < 0x80) {
      if (c != '#' && (i >= k.size() || c != static_cast<unsigned char>(k[i])))
        return false;
      ++at;
      continue;
    }
    return false;
  }
  return true;
}

bool matchesStarPattern(std::string_view p, std::string_view k) {
  const bool leading = p.starts_with('*');
  const bool trailing = p.ends_with('*');
  if (leading && trailing) return contains(k, withoutStars(p));
  if (leading) return hasSuffix(k, withoutStars(p));
  if (trailing) return hasPrefix(k, withoutStars(p));
  const size_t star = p.find('*');
  if (star == std::string_view::npos) return false;
  // Only the first inner "*" is a wildcard; later ones are literal.
  return hasPrefix(k, p.substr(0, star)) && hasSuffix(k, p.substr(star + 1));
}

}  // namespace

std::string keypadString(std::string_view text) {
  std::string out;
  for (char c : text.substr(0, std::min<size_t>(text.size(), 255)))
    if (isDialable(c)) out += c;
  return out;
}

std::string formattedStringValue(std::string_view text) {
  if (utf16Length(text) < 4) return std::string(text);
  using Number = platform::CNPhoneNumber;
  rt::Class* cls = rt::getClass(Number::kName);
  if (!cls) return std::string(text);
  rt::Id number =
      rt::send(rt::classObject(cls), Number::phoneNumberWithStringValue,
               std::string(text));
  // What the platform's formatter gives is the answer, an empty text
  // included: callers show what the platform would.
  return rt::send(number, Number::formattedStringValue);
}

size_t indexOfPhoneNumber(const std::vector<std::string>& patterns,
                          std::string_view number) {
  if (patterns.empty()) return kNotFound;
  const std::string k = keypadString(number);
  if (k.empty()) return kNotFound;
  size_t tested = 0;
  for (const std::string& p : patterns) {
    // Longer patterns are skipped without being counted: callers rely on the
    // index counting only the patterns that were tried.
    if (utf16Length(p) > k.size()) continue;
    if (p == k) return tested;
    const bool match = p.find('#') != std::string::npos
                           ? matchesHashPattern(p, k)
                           : matchesStarPattern(p, k);
    if (match) return tested;
    ++tested;
  }
  return kNotFound;
}

}  // namespace zv
