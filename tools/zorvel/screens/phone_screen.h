// The keypad screen of a simulated Phone app as data: what the host display
// and labels show, the three pages of the result pager (name and number
// lines with the highlighted run), the counter, the visible buttons, the
// result list when open, the presented menu, the in-call screen while it is
// up (number, status line, own label), and what was dialled, opened,
// copied, alerted or vibrated since the previous look. Used by `zorvel
// phone`.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "hosts/phone/app.h"
#include "platform/sim/sim_platform.h"

namespace zv::cli {

class PhoneScreen {
 public:
  PhoneScreen(platform::SimProcess& process, hosts::PhoneApplication& app)
      : process_(process), app_(app) {}
  // The screen now; new events are those since the previous capture.
  nlohmann::ordered_json capture();
  // The same as text, one item per line.
  static std::string render(const nlohmann::ordered_json& screen);

 private:
  platform::SimProcess& process_;
  hosts::PhoneApplication& app_;
  size_t dialled_ = 0, events_ = 0, add_contacts_ = 0;
};

}  // namespace zv::cli
