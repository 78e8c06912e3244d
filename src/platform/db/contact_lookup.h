// Finding the caller's address-book record by phone number, as the
// platform's telephony does for the abUID of a call: the phone numbers of
// the address-book database are compared with the call's number after both
// are reduced to their digits, an international prefix ("+" or "00") and a
// national trunk "0" dropped. Two numbers are the same when those digits
// are equal, or when both have at least seven digits and the longer one is
// the shorter one preceded by a country code (one to three digits), so that
// "+86 138 0013 8000" finds "138-0013-8000" and "010 8888 6666" finds
// "+86 10 8888 6666".
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace zv::platform_schema {

struct ContactMatch {
  int64_t recordId = -1;
  std::string label;  // the stored label of the matching number; "" none
};

// Whether two phone numbers are the same number by the rule above.
bool sameNumber(std::string_view a, std::string_view b);

// Many numbers, each under an id, looked up by the rule above in time that
// does not grow with their count (a long list compared number by number
// made every row of a long call list cost the whole address book).
class SameNumberIndex {
 public:
  void add(std::string_view number, size_t id);
  // The smallest id whose number is the same as `number`; nullopt when none
  // is, or `number` has no digits.
  std::optional<size_t> first(std::string_view number) const;

 private:
  // Digits (as compared) to the smallest id holding them, and the same for
  // those digits less a one- to three-digit country code.
  std::unordered_map<std::string, size_t> exact_, national_;
};

// The record holding `number` in the address-book database at the host path
// `file`: an exact match of the digits first, else the first number that is
// the same by the rule above, in record order. nullopt when none matches,
// the number has no digits, or the database cannot be read.
std::optional<ContactMatch> findContactByNumber(const std::string& file,
                                                std::string_view number);

// The same lookup, telling "no record holds the number" (match nullopt,
// readable) from "the address book could not be read" (readable false:
// missing, damaged, or locked by another process). A lock is not waited
// for: a caller deciding on a ringing call must not be held up by it.
struct ContactLookup {
  std::optional<ContactMatch> match;
  bool readable = true;
};
ContactLookup lookUpContactNow(const std::string& file,
                               std::string_view number);

}  // namespace zv::platform_schema
