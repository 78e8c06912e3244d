#include "platform/db/contact_lookup.h"

#include <filesystem>

#include "platform/db/platform_schema.h"
#include "platform/db/sqlite_db.h"

namespace zv::platform_schema {
namespace {

constexpr char kPhonesQuery[] =
    "SELECT ABMultiValue.record_id, ABMultiValue.value, "
    "ABMultiValueLabel.value FROM ABMultiValue LEFT JOIN ABMultiValueLabel "
    "ON ABMultiValue.label = ABMultiValueLabel.ROWID "
    "WHERE ABMultiValue.property = ? AND ABMultiValue.value IS NOT NULL "
    "ORDER BY ABMultiValue.record_id, ABMultiValue.UID";

constexpr size_t kMinimumDigits = 7;
constexpr size_t kLongestCountryCode = 3;

// The digits of a number without its international prefix or trunk 0.
std::string numberKey(std::string_view number) {
  std::string digits;
  bool international = false;
  for (char c : number) {
    if (c >= '0' && c <= '9') {
      digits += c;
    } else if (c == '+' && digits.empty()) {
      international = true;
    }
  }
  if (!international && digits.starts_with("00")) {
    digits.erase(0, 2);
    international = true;
  }
  if (!international && digits.size() > 1 && digits.front() == '0')
    digits.erase(0, 1);
  return digits;
}

// Whether `longer` is `shorter` preceded by a country code.
bool withCountryCode(const std::string& longer, const std::string& shorter) {
  return shorter.size() >= kMinimumDigits && longer.size() > shorter.size() &&
         longer.size() - shorter.size() <= kLongestCountryCode &&
         longer.ends_with(shorter);
}

bool sameKey(const std::string& a, const std::string& b) {
  if (a.empty() || b.empty()) return false;
  return a == b || withCountryCode(a, b) || withCountryCode(b, a);
}

}  // namespace

bool sameNumber(std::string_view a, std::string_view b) {
  return sameKey(numberKey(a), numberKey(b));
}

void SameNumberIndex::add(std::string_view number, size_t id) {
  const std::string key = numberKey(number);
  if (key.empty()) return;
  auto keep = [id](std::unordered_map<std::string, size_t>& map,
                   std::string digits) {
    auto [it, added] = map.emplace(std::move(digits), id);
    if (!added && id < it->second) it->second = id;
  };
  keep(exact_, key);
  for (size_t code = 1;
       code <= kLongestCountryCode && key.size() - code >= kMinimumDigits &&
       code < key.size();
       ++code)
    keep(national_, key.substr(code));
}

std::optional<size_t> SameNumberIndex::first(std::string_view number) const {
  const std::string key = numberKey(number);
  if (key.empty()) return std::nullopt;
  std::optional<size_t> best;
  auto consider = [&](const std::unordered_map<std::string, size_t>& map,
                      const std::string& digits) {
    auto it = map.find(digits);
    if (it != map.end() && (!best || it->second < *best)) best = it->second;
  };
  consider(exact_, key);
  // A stored number that is this one less its country code...
  for (size_t code = 1; code <= kLongestCountryCode && code < key.size() &&
                        key.size() - code >= kMinimumDigits;
       ++code)
    consider(exact_, key.substr(code));
  // ...or this one with a country code before it.
  if (key.size() >= kMinimumDigits) consider(national_, key);
  return best;
}

namespace {

ContactLookup lookUp(const std::string& file, std::string_view number,
                     int busyMs) {
  const std::string key = numberKey(number);
  if (key.empty()) return {};
  // A phone without an address book has no contacts: every caller is a
  // stranger, and that is a readable answer.
  std::error_code ec;
  if (!std::filesystem::exists(file, ec) && !ec) return {};
  sql::Database db(file, sql::Database::Mode::kReadOnly, busyMs);
  sql::Statement phones(db, kPhonesQuery);
  phones.bind(1, kPhoneProperty);
  ContactLookup out;
  while (phones.step()) {
    const std::string other = numberKey(phones.text(1).value_or(""));
    if (!sameKey(key, other)) continue;
    ContactMatch match{phones.int64(0), phones.text(2).value_or("")};
    if (other == key) return {std::move(match), true};
    if (!out.match) out.match = std::move(match);
  }
  // Running out of rows is the only clean end; a statement that did not
  // prepare or stopped on an error read nothing we can trust.
  out.readable = phones.ok() && phones.done();
  if (!out.readable) out.match.reset();
  return out;
}

}  // namespace

std::optional<ContactMatch> findContactByNumber(const std::string& file,
                                                std::string_view number) {
  return lookUp(file, number, 1000).match;
}

ContactLookup lookUpContactNow(const std::string& file,
                               std::string_view number) {
  return lookUp(file, number, 0);
}

}  // namespace zv::platform_schema
