// ZVInCallController: the other party's area on the Phone app's own call
// screen (outgoing and active calls, systems before 8.0). When a call's
// status changes it remembers the call's number, status and contact record
// and looks up the area for dialling (outgoing flags) or active (in-call
// flags) calls, then makes the LCD set its label again so that the label
// rewrite (areaInCall(lcd, label)) joins the area to the host's status text
// or puts it on an own label (tag 10086), with a known contact's number on
// 4-inch screens. It also plays one vibration when an outgoing call is
// answered (connectedVibrate, vibrate 0.1 s later).
//
// The host is reached only through InCallHost (supplied by the in-call
// hooks). A per-process singleton; main thread only.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "callscreens/connect_vibration.h"
#include "callscreens/in_call_host.h"

namespace zv {

class ZVAreaLoader;
class ZVPhoneSettings;

class ZVInCallController
    : public std::enable_shared_from_this<ZVInCallController> {
 public:
  static constexpr int kOwnLabelTag = 10086;

  static std::shared_ptr<ZVInCallController> sharedInstance();
  ZVInCallController();

  void setHost(std::shared_ptr<InCallHost> host) { host_ = std::move(host); }

  // Forgets the call now shown.
  void clearCurCallInfo();
  // areaInCall:call: the call status changed (`argument` is the call, or on
  // 8.0 and later a notification carrying it); `controller` is the host's
  // in-call controller.
  void areaInCall(const rt::Id& controller, const rt::Id& argument);
  // areaInCall:label: the LCD's label as it should be shown; may fill the
  // own label inside the LCD.
  std::string areaInCall(const rt::Id& lcd, const std::string& label);
  // connectedVibrate: schedules one vibration when an outgoing call becomes
  // active; re-armed by any non-active status.
  void connectedVibrate(const rt::Id& argument);
  // The connect vibration, with the user's pattern.
  void vibrate();

  // The call now shown (for the hooks' tests and the command line).
  const std::string& curNumber() const { return _curNumber; }
  const std::string& curArea() const { return _curArea; }
  int curCallStatus() const { return _curCallStatus; }
  int curRecordID() const { return _curRecordID; }
  bool vibrateLatch() const { return connect_vibration_.latched(); }

 private:
  rt::Id callOf(const rt::Id& argument) const;

  std::shared_ptr<ZVPhoneSettings> _settings;
  std::shared_ptr<ZVAreaLoader> _area;
  std::string _curNumber;
  std::string _curArea;
  int32_t _curCallStatus = 0;
  int32_t _curRecordID = -1;
  // True once the vibration is scheduled for the current active call.
  ConnectVibration connect_vibration_;
  std::shared_ptr<InCallHost> host_;
};

}  // namespace zv
