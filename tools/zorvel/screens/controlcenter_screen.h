// The Control Centre of a simulated springboard as data: whether it is
// open, each button with the glyph file of its normal, source and selected
// looks ("home5s_normal.png" for an image read from /Library/Zorvel/,
// "(host)" for the springboard's own artwork, "(none)" for no image) and
// its selected state, the Bluetooth position's toggle (title and state),
// and what the buttons did since the previous look (home press, app
// switcher, lock, apps opened, radios and cellular data switched). Used by
// `zorvel controlcenter`.
#pragma once

#include <map>
#include <nlohmann/json.hpp>
#include <string>

#include "hosts/springboard/app.h"
#include "platform/sim/sim_platform.h"

namespace zv::cli {

class ControlCenterScreen {
 public:
  // Reads the glyph files of the device once, in the process's context.
  ControlCenterScreen(platform::SimProcess& process,
                      hosts::SpringBoardApplication& app);
  // The screen now; effects are those since the previous capture.
  nlohmann::ordered_json capture();
  // The same as text, one item per line.
  static std::string render(const nlohmann::ordered_json& screen);

 private:
  std::string fileOf(const ui::ImagePtr& image, const std::string& button);

  platform::SimProcess& process_;
  hosts::SpringBoardApplication& app_;
  std::map<std::string, ui::ImagePtr> files_;
  size_t effects_ = 0, events_ = 0;
};

}  // namespace zv::cli
