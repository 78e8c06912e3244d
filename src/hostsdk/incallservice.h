// The in-call service's classes and selectors ("com.apple.InCallService",
// 8.x) that the call screens use, each declared once with its signature.
// The simulated in-call service defines them; the in-call hooks replace and
// send them.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/runtime/message.h"
#include "platform/ui/image.h"
#include "platform/value.h"

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
  // A call's status changed; the notification's object is the TUCall.
  static constexpr rt::Message<void(rt::Id)> callStateChangedNotification{
      kName, "callStateChangedNotification:"};
};

// The audio call screen inside the root: the call controls and, above
// them, the participants.
struct PHAudioCallViewController {
  static constexpr std::string_view kName = "PHAudioCallViewController";
  // The controls asked for the keypad; the participants make room for it.
  static constexpr rt::Message<void(rt::Id)>
      audioCallControlsViewControllerRequestedKeypadPresentation{
          kName, "audioCallControlsViewControllerRequestedKeypadPresentation:"};
  static constexpr rt::Message<rt::Id()> callParticipantsViewController{
      kName, "callParticipantsViewController"};
};

// The participants of the call screen: one row per call group, with the
// caller's name, a status label and a picture.
struct PHCallParticipantsViewController {
  static constexpr std::string_view kName = "PHCallParticipantsViewController";
  static constexpr rt::Message<void(rt::Id)> callStatusChangedNotification{
      kName, "callStatusChangedNotification:"};
  // The status label of a participant: a text, or an array of texts shown
  // in turn (the first one first).
  static constexpr rt::Message<Value(int32_t, rt::Id)>
      labelForParticipantAtIndexInParticipantsView{
          kName, "labelForParticipantAtIndex:inParticipantsView:"};
  // The participant's picture, null when it has none.
  static constexpr rt::Message<ui::ImagePtr(int32_t, rt::Id)>
      imageForParticipantAtIndexInParticipantsView{
          kName, "imageForParticipantAtIndex:inParticipantsView:"};
  static constexpr rt::Message<void(bool)> viewWillAppear{kName,
                                                          "viewWillAppear:"};
  static constexpr rt::Message<rt::Id()> participantsView{kName,
                                                          "participantsView"};
  // The call groups shown, in order; each groups calls (conference).
  static constexpr rt::Message<std::vector<rt::Id>()> callGroups{kName,
                                                                 "callGroups"};
};

struct TUCallGroup {
  static constexpr std::string_view kName = "TUCallGroup";
  static constexpr rt::Message<std::vector<rt::Id>()> calls{kName, "calls"};
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
