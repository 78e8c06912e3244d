// What a person does on the window, turned into what a finger does on the
// simulated Phone app. Touches go through the hit testing of the window the
// screen shows now (hosts::keyWindow): a tap goes to the deepest view under
// it and up its superviews until one answers (a keypad key, a button, a
// table cell, a tab, an alert's or action sheet's button), then as the end
// of a touch; a touch held for half a second is a long press the same way
// (the pager's delete, its match menu, "+" on the 0 key); a drag moves the
// scroll view under it, a paging one by a whole page.
//
// Keys: with an alert that takes text open, what is typed goes into its
// field (BackSpace deletes a character, Return presses its last button);
// otherwise digits, '*', '#' and '+' type on the keypad, BackSpace deletes
// (the pager's delete when it shows one, the keypad's otherwise), Return
// presses the call button.
//
// After everything that reached the app, `changed` runs.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "hosts/phone/app.h"
#include "platform/ui/window.h"
#include "tools/zorvel/window/surface.h"

namespace zv::window {

class PhoneInput final : public SurfaceInput {
 public:
  struct Port {
    virtual ~Port() = default;
    // The window the screen shows now, laid out.
    virtual std::shared_ptr<ui::UIWindow> window() = 0;
    // Something reached the app: repaint, place what it dialled.
    virtual void changed() = 0;
    virtual void closed() = 0;
  };

  static constexpr double kLongPressSeconds = 0.5;
  // A finger that moves farther than this (points) drags.
  static constexpr double kSlop = 10;

  PhoneInput(hosts::PhoneApplication& app, Port& port)
      : app_(app), port_(port) {}
  ~PhoneInput() override;

  void pointerDown(ui::Point point) override;
  void pointerMoved(ui::Point point) override;
  void pointerUp(ui::Point point) override;
  void key(const std::string& name, uint32_t character) override;
  void closed() override { port_.closed(); }

  // The same as key() for one keypad character or "BackSpace"/"Return";
  // false for a key the phone does not take.
  bool type(const std::string& name, uint32_t character);

 private:
  bool typeInAlert(ui::UIWindow& window, const std::string& name,
                   uint32_t character);
  void longPress();
  void tap(ui::Point point);
  void drag(ui::Point from, ui::Point to);
  void cancelTimer();

  hosts::PhoneApplication& app_;
  Port& port_;
  ui::Point down_;
  bool moved_ = false, long_pressed_ = false, touching_ = false;
  unsigned timer_ = 0;
};

}  // namespace zv::window
