// An entry of the black or white list as a person types it, in the form the
// blocking reads it: the list's keys are matched by indexOfPhoneNumber
// against the caller's keypad form, so an entry keeps only dialable
// characters ("#" one character, "*" a run at the start, the end or once
// inside). Formatting a person adds ("+1 (555) 010-0199") is dropped; an
// entry that could never match a caller is refused.
#pragma once

#include <optional>
#include <string>

namespace zv::cli {

// The entry to store, or nullopt with `why` set to the reason it can never
// match.
std::optional<std::string> listEntry(const std::string& typed,
                                     std::string* why);

}  // namespace zv::cli
