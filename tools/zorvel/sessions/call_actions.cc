#include "tools/zorvel/sessions/call_actions.h"

#include <charconv>
#include <map>

#include "tools/zorvel/command.h"
#include "tools/zorvel/sessions/session.h"

namespace zv::cli {
namespace {

using Kind = CallAction::Kind;

[[noreturn]] void bad(const std::string& action, const std::string& why) {
  throw UsageError("bad action " + action + ": " + why);
}

[[noreturn]] void unknown(const std::string& action) {
  throw UsageError("unknown action " + action);
}

CallAction actionOf(Kind kind, const std::string& text) {
  CallAction a;
  a.kind = kind;
  a.text = text;
  return a;
}

std::vector<std::string> splitColons(const std::string& text) {
  std::vector<std::string> parts;
  size_t start = 0;
  while (true) {
    size_t colon = text.find(':', start);
    parts.push_back(text.substr(start, colon - start));
    if (colon == std::string::npos) break;
    start = colon + 1;
  }
  return parts;
}

// A number as the other side's phone would send it: printable, no blanks
// are needed (the address book and the lists compare its keypad form).
void checkNumber(const std::string& action, const std::string& number) {
  for (unsigned char c : number)
    if (c < 0x20 || c == 0x7f) bad(action, "control character in the number");
}

CallAction parseIncoming(const std::string& action,
                         const std::vector<std::string>& parts) {
  CallAction a = actionOf(Kind::Incoming, action);
  if (!parts[1].empty()) {
    checkNumber(action, parts[1]);
    a.number = parts[1];
  }
  for (size_t i = 2; i < parts.size(); ++i) {
    const std::string& option = parts[i];
    if (option == "platform-blocked") {
      if (a.platformBlocked) bad(action, "platform-blocked given twice");
      a.platformBlocked = true;
    } else if (option.starts_with("contact=")) {
      if (a.contact) bad(action, "contact= given twice");
      const std::string id = option.substr(8);
      int32_t value = 0;
      auto [end, ec] = std::from_chars(id.data(), id.data() + id.size(), value);
      if (id.empty() || ec != std::errc() || end != id.data() + id.size())
        bad(action, "contact= needs a record id");
      a.contact = value;
    } else {
      bad(action, "unknown option " + option);
    }
  }
  return a;
}

}  // namespace

std::vector<CallAction> parseCallActions(const std::vector<std::string>& args) {
  static const std::map<std::string, Kind> plain = {
      {"answer", Kind::Answer}, {"decline", Kind::Decline},
      {"hangup", Kind::Hangup}, {"connect", Kind::Connect},
      {"hold", Kind::Hold},     {"resume", Kind::Resume},
      {"end", Kind::End},       {"lock", Kind::Lock},
      {"unlock", Kind::Unlock}, {"keypad", Kind::Keypad},
  };
  std::vector<CallAction> actions;
  for (const std::string& action : args) {
    if (auto it = plain.find(action); it != plain.end()) {
      actions.push_back(actionOf(it->second, action));
      continue;
    }
    std::vector<std::string> parts = splitColons(action);
    const std::string& verb = parts[0];
    if (parts.size() < 2) unknown(action);
    if (verb == "incoming") {
      actions.push_back(parseIncoming(action, parts));
      continue;
    }
    if (parts.size() != 2) bad(action, "too many ':' parts");
    const std::string& arg = parts[1];
    if (verb == "outgoing" || verb == "message") {
      if (arg.empty()) bad(action, verb + ": needs a number");
      checkNumber(action, arg);
      CallAction a =
          actionOf(verb == "message" ? Kind::Message : Kind::Outgoing, action);
      a.number = arg;
      actions.push_back(a);
    } else if (verb == "wait") {
      CallAction a = actionOf(Kind::Wait, action);
      a.seconds = actionSeconds(arg, action);
      actions.push_back(a);
    } else if (verb == "notify") {
      if (arg.empty()) bad(action, "notify: needs a notification name");
      CallAction a = actionOf(Kind::Notify, action);
      a.name = arg;
      actions.push_back(a);
    } else {
      unknown(action);
    }
  }
  return actions;
}

}  // namespace zv::cli
