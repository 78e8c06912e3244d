// The in-call service's classes and selectors ("com.apple.InCallService",
// 8.x) that the call screens use, each declared once with its signature.
// The simulated in-call service defines them; the in-call hooks replace and
// send them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/runtime/message.h"

namespace zv::sdk {

// The root of the call screen. The service builds a
// PHInCallRootViewControllerActual with the initialiser inherited from
// here; the initialiser's answer is what the service shows.
struct PHInCallRootViewController {
  static constexpr std::string_view kName = "PHInCallRootViewController";
  static constexpr rt::Message<rt::Id(std::optional<std::string>, rt::Id)>
      initWithNibNameBundle{kName, "initWithNibName:bundle:"};
  // The call that made the screen appear, or nil.
  static constexpr rt::Message<rt::Id()> alertActivationCall{
      kName, "alertActivationCall"};
};

struct PHInCallRootViewControllerActual {
  static constexpr std::string_view kName = "PHInCallRootViewControllerActual";
  static constexpr rt::Message<void(bool)> viewWillAppear{kName,
                                                          "viewWillAppear:"};
  static constexpr rt::Message<void(bool)> viewWillDisappear{
      kName, "viewWillDisappear:"};
  static constexpr rt::Message<void()> dealloc{kName, "dealloc"};
};

// Plays the ringtone (and its vibration pattern) of a ringing call.
struct PHRingtoneController {
  static constexpr std::string_view kName = "PHRingtoneController";
  // Ringtone identifier (nil: the default) and vibration pattern (nil: the
  // default).
  static constexpr rt::Message<void(std::optional<std::string>, rt::Id)>
      playRingtoneWithIdentifierVibrationPattern{
          kName, "playRingtoneWithIdentifier:vibrationPattern:"};
  static constexpr rt::Message<void()> stopRingtone{kName, "stopRingtone"};
};

// The service's view of the springboard.
struct PHInCallUtilities {
  static constexpr std::string_view kName = "PHInCallUtilities";
  static constexpr rt::Message<rt::Id()> sharedInstance{kName, "sharedInstance",
                                                        true};
  static constexpr rt::Message<bool()> isSpringBoardLocked{
      kName, "isSpringBoardLocked"};
};

}  // namespace zv::sdk
