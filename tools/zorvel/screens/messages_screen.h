// The screen of a simulated Messages app as data, for `zorvel messages`:
// the conversation list (sender, area, summary, date, picture, unread dot),
// a conversation (each message with its side and picture), the composer
// (its buttons and recipients), the recipient-group screen (its three
// sections and buttons) and the checklist (rows with their check marks),
// whichever is on top, plus an open alert and the alerts shown since the
// previous look.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "hosts/messages/app.h"
#include "platform/sim/sim_platform.h"

namespace zv::cli {

class MessagesScreen {
 public:
  MessagesScreen(platform::SimProcess& process, hosts::MessagesApplication& app)
      : process_(process), app_(app) {}
  nlohmann::ordered_json capture();
  static std::string render(const nlohmann::ordered_json& screen);

 private:
  platform::SimProcess& process_;
  hosts::MessagesApplication& app_;
  size_t alerts_ = 0;
};

}  // namespace zv::cli
