// What the keypad controller needs of the host's keypad view controller
// (the "dialer"), as one interface. The keypad hooks implement it with the
// host's selectors and the host's own key handlers (the implementations the
// hooks replaced), so the controller never names a host class or selector.
// Every operation takes the dialer it acts on; none is called without one.
#pragma once

#include <memory>
#include <string>

#include "platform/runtime/object.h"
#include "platform/ui/label.h"

namespace zv {

class KeypadHost {
 public:
  virtual ~KeypadHost() = default;

  // Capability tests, asked once per process by the controller: the dialer
  // has an add-contact button; its display can be set; it can be read.
  virtual bool hasAddContactButton(const rt::Id& dialer) = 0;
  virtual bool canSetDisplay(const rt::Id& dialer) = 0;
  virtual bool canReadDisplay(const rt::Id& dialer) = 0;

  // The display (only with the matching capability).
  virtual std::string displayText(const rt::Id& dialer) = 0;
  virtual void setDisplayText(const rt::Id& dialer, const std::string& text,
                              bool needsFormat) = 0;
  // The add-contact button (null without the capability) and its label
  // (null when the button has none).
  virtual rt::Id addContactButton(const rt::Id& dialer) = 0;
  virtual std::shared_ptr<ui::UILabel> addToContactsLabel(
      const rt::Id& button) = 0;
  // The dialer's "add to contacts" action, if it has one.
  virtual bool canAddToContacts(const rt::Id& dialer) = 0;
  virtual void addButtonClicked(const rt::Id& dialer, const rt::Id& button) = 0;
  // The dialer's root view, into which the result views are put.
  virtual std::shared_ptr<ui::UIView> view(const rt::Id& dialer) = 0;

  // The host's own key handlers, bypassing the hooks.
  virtual void appendString(const rt::Id& dialer, const rt::Id& pad,
                            const std::string& text) = 0;
  virtual void replaceLastDigit(const rt::Id& dialer, const rt::Id& pad,
                                const std::string& text) = 0;
  virtual void deleteLastDigit(const rt::Id& dialer, const rt::Id& pad) = 0;
  virtual void callButtonPressed(const rt::Id& dialer, const rt::Id& pad) = 0;
};

}  // namespace zv
