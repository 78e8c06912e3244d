#include "tools/zorvel/phone_setup/list_entry.h"

#include <algorithm>

#include "core/number_utils.h"

namespace zv::cli {
namespace {

// What people put between digits; anything else is not part of a number.
bool isFormatting(char c) {
  return c == ' ' || c == '-' || c == '(' || c == ')' || c == '.' || c == '/' ||
         c == '\t';
}

}  // namespace

std::optional<std::string> listEntry(const std::string& typed,
                                     std::string* why) {
  std::string entry;
  for (char c : typed) {
    if (isFormatting(c)) continue;
    if (!isDialable(c)) {
      *why = "holds '" + std::string(1, c) + "', which no caller's number has";
      return std::nullopt;
    }
    entry += c;
  }
  if (entry.empty()) {
    *why = "has no digits";
    return std::nullopt;
  }
  // With "#" every character is compared in place (a "*" there is literal).
  // Without, a "*" at either end is removed with every other "*", and an
  // empty rest is never found in a number.
  const bool wildcardRun = entry.find('#') == std::string::npos &&
                           (entry.front() == '*' || entry.back() == '*');
  if (wildcardRun && std::all_of(entry.begin(), entry.end(),
                                 [](char c) { return c == '*'; })) {
    *why = "is only '*', which matches no number";
    return std::nullopt;
  }
  return entry;
}

}  // namespace zv::cli
