// What the Control Centre controller needs of the springboard, as one
// interface: the four platform actions its buttons stand for (Home press,
// app switcher, lock-button press, the cellular-data plan switch) and the
// few things it reads and sets on the host's Control Centre objects
// (sections, buttons, setting modules). The Control Centre hooks implement
// it with the host's selectors, so the controller never names a host class
// or selector. Host objects are passed as they came from the host and may be
// nil; every operation copes with nil (nothing to read, nothing done).
#pragma once

#include <string>
#include <string_view>

#include "platform/runtime/object.h"
#include "platform/ui/image.h"

namespace zv {

class ControlCenterHost {
 public:
  virtual ~ControlCenterHost() = default;

  // --- Actions -------------------------------------------------------------
  // A Home-button press (the springboard UI controller suspends what is
  // shown and returns to the home screen).
  virtual void pressHomeButton() = 0;
  // Shows or hides the app switcher.
  virtual void toggleSwitcher() = 0;
  // A lock-button press from `source`, as systems 8.0 and later take it
  // (event none) and as systems below 8.0 take it.
  virtual void lockButtonUp(int source) = 0;
  virtual void lockButtonUpFromSource(int source) = 0;
  // The cellular-data plan switch of the telephony service.
  virtual bool cellularDataPlanIsEnabled() = 0;
  virtual void setCellularDataPlanEnabled(bool enabled) = 0;

  // --- Control Centre objects ---------------------------------------------
  // An object-valued instance variable of `object` by name; nil when there
  // is none.
  virtual rt::Id objectIvar(const rt::Id& object, std::string_view name) = 0;
  // The button under `identifier` in a settings section's buttons by ID;
  // nil when the section has no such dictionary or no such button.
  virtual rt::Id settingsButton(const rt::Id& section,
                                std::string_view identifier) = 0;
  // Whether the object is a Control Centre button (of the host's button
  // class or a subclass).
  virtual bool isControlCenterButton(const rt::Id& object) = 0;
  // The identifier of a button or a setting/shortcut module; "" when it has
  // none.
  virtual std::string identifier(const rt::Id& object) = 0;
  // A button's glyph images (normal, source, selected) and selected state.
  virtual void setGlyphImages(const rt::Id& button, ui::ImagePtr normal,
                              ui::ImagePtr source, ui::ImagePtr selected) = 0;
  virtual void setSelected(const rt::Id& button, bool selected) = 0;
  // A setting module's enabled state (as its toggle shows it).
  virtual bool isEnabled(const rt::Id& module) = 0;
  virtual void setEnabled(const rt::Id& module, bool enabled) = 0;
};

}  // namespace zv
