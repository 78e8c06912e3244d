// The Phone application's keypad screen: the dialer view controller with
// its display, name label, add-contact button and phone pad. It behaves on
// its own like the platform's keypad (digits appear in its display, call
// dials the display's number, the name label shows a known number's name,
// the add-contact button appears with a number); every selector is declared
// in hostsdk/phone.h, and everything the screen does to itself goes through
// runtime messages, so a replaced method sees it. Variants
// (PhoneHostOptions) leave out a display setter, a display getter or the
// add-contact button.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/ui/button.h"
#include "platform/ui/label.h"
#include "platform/ui/view_controller.h"

namespace zv::hosts {

struct PhoneHostOptions {
  bool settableDisplay = true;   // the display responds to setText:needsFormat:
  bool readableDisplay = true;   // the display responds to text
  bool addContactButton = true;  // the dialer view responds to addContactButton
};

// Registers the keypad screen's classes in the current process.
void registerKeypadClasses(const PhoneHostOptions& options);

class PhoneLCDView : public ui::UIView {
 public:
  static constexpr const char* kClassName = "PHHandsetDialerLCDView";
  explicit PhoneLCDView(rt::Class* isa) : ui::UIView(isa) {}
  // The number held (keypad characters as typed) and whether it is shown
  // formatted.
  std::string number;
  bool formatted = true;
  // The number, large and centred.
  void draw(ui::Canvas& canvas) const override;
};

class PhoneNameLabelView : public ui::UIView {
 public:
  static constexpr const char* kClassName = "PHHandsetDialerNameLabelView";
  explicit PhoneNameLabelView(rt::Class* isa) : ui::UIView(isa) {}
  std::string name, label;
  // "NAME  LABEL", centred.
  void draw(ui::Canvas& canvas) const override;
};

class PhoneAddContactButton : public ui::UIButton {
 public:
  static constexpr const char* kClassName = "PHAddContactButton";
  explicit PhoneAddContactButton(rt::Class* isa) : ui::UIButton(isa) {}
  std::shared_ptr<ui::UILabel> label;
};

// One key of the phone pad: a round key with its digit and letters; a tap
// types the digit, holding 0 types "+".
class PhonePadKey : public ui::UIButton {
 public:
  static constexpr const char* kClassName = "TPNumberPadButton";
  explicit PhonePadKey(rt::Class* isa) : ui::UIButton(isa) {}
  char key = '0';
  void draw(ui::Canvas& canvas) const override;
};

// The keypad's phone pad: twelve keys in four rows and the round call
// button below them; key presses become messages to its delegate.
class PhonePad : public ui::UIView {
 public:
  static constexpr const char* kClassName = "TPDialerPhonePad";
  explicit PhonePad(rt::Class* isa) : ui::UIView(isa) {}
  // Makes the keys and the call button (once).
  void build();
  const std::vector<std::shared_ptr<PhonePadKey>>& keys() const {
    return keys_;
  }
  const std::shared_ptr<ui::UIButton>& callButton() const {
    return call_button_;
  }
  // The keys sized to the pad's height, the widest 78 points.
  void layoutSubviews() override;
  rt::WeakId delegate;
  // One key: phonePad:appendString:.
  void pressKey(char key);
  // Holding 0 types "+" in place of the 0 (phonePad:replaceLastDigit
  // WithString:).
  void holdZero();
  void pressDelete();  // phonePadDeleteLastDigit:
  void pressCall();    // _callButtonPressed:

 private:
  std::vector<std::shared_ptr<PhonePadKey>> keys_;
  std::shared_ptr<ui::UIButton> call_button_;
};

class PhoneDialerView : public ui::UIView {
 public:
  static constexpr const char* kClassName = "PHHandsetDialerView";
  explicit PhoneDialerView(rt::Class* isa) : ui::UIView(isa) {}
  std::shared_ptr<PhoneLCDView> lcd;
  std::shared_ptr<PhoneNameLabelView> nameLabel;
  std::shared_ptr<PhoneAddContactButton> addContact;
  std::shared_ptr<ui::UIButton> deleteButton;
  std::shared_ptr<PhonePad> pad;
  // The delete button sits right of the call button.
  void layoutSubviews() override;
};

class DialerController : public ui::UIViewController {
 public:
  static constexpr const char* kClassName = "DialerController";
  explicit DialerController(rt::Class* isa) : ui::UIViewController(isa) {}

  std::shared_ptr<PhoneDialerView> dialerView();
  // The host throws its keypad view away and builds a new one (what it does
  // after a memory warning); the typed number is kept.
  void rebuildView();
  // What the display shows, formatted or not.
  std::string displayNumber();
  // Numbers the host knows a name and label for (its own contact lookup).
  std::map<std::string, std::pair<std::string, std::string>> knownNumbers;
  // Numbers handed to "add to contacts", in order.
  std::vector<std::string> addContactRequests;
  std::string lastDialled;

  // Host behaviour behind the runtime methods.
  void hostDisplayChanged();

 protected:
  std::shared_ptr<ui::UIView> loadView() override;
};

}  // namespace zv::hosts
