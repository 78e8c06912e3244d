// The telephony of a computer without a modem: there are never any calls,
// hanging up finds nothing to hang up, there is no operator, and cellular
// data is off and cannot be switched on. The Linux platform's telephony
// until a program that serves a phone sets ModemManager's
// (modem_telephony.h).
#pragma once

#include "platform/telephony/telephony.h"

namespace zv::platform {

class NoModemTelephony final : public Telephony {
 public:
  std::vector<CallInfo> calls() const override { return {}; }
  std::optional<CallInfo> call(CallId) const override { return std::nullopt; }
  void disconnect(CallId) override {}
  void answer(CallId) override {}
  void disconnectAll() override {}
  bool cellularDataEnabled() const override { return false; }
  void setCellularDataEnabled(bool) override {}
  std::string operatorName() const override { return ""; }
  // No call ever changes, so nothing is ever delivered.
  CallObserverToken observeCalls(
      std::function<void(const CallInfo&)>) override {
    return ++next_token_;
  }
  void removeCallObserver(CallObserverToken) override {}

 private:
  CallObserverToken next_token_ = 0;
};

}  // namespace zv::platform
