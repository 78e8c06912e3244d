// The actions of a `zorvel call` session, parsed and checked all together
// before the first one runs: a bad action anywhere makes the whole session
// a usage error and nothing happens.
//
//   incoming:NUMBER[:contact=ID][:platform-blocked]   a call arrives; an
//       empty NUMBER is a hidden caller; without contact= the caller is
//       looked up in the address book
//   answer decline hangup outgoing:NUMBER connect hold resume end
//   wait:SECONDS lock unlock notify:NAME
//   message:NUMBER   a text message arrives (the springboard's banner)
//   keypad           the user opens the call screen's keypad (8.x)
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace zv::cli {

struct CallAction {
  enum class Kind {
    Incoming,
    Answer,
    Decline,
    Hangup,
    Outgoing,
    Connect,
    Hold,
    Resume,
    End,
    Wait,
    Lock,
    Unlock,
    Notify,
    Message,
    Keypad,
  };
  Kind kind = Kind::Answer;
  std::string text;  // the action as given
  // incoming (nullopt: hidden), outgoing, message
  std::optional<std::string> number;
  std::optional<int32_t> contact;  // incoming: contact=ID
  bool platformBlocked = false;    // incoming: platform-blocked
  double seconds = 0;              // wait
  std::string name;                // notify
};

// Throws UsageError naming the first bad action.
std::vector<CallAction> parseCallActions(const std::vector<std::string>& args);

}  // namespace zv::cli
