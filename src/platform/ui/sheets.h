// UIActionSheet and UIAlertView of the UI model. Both record their buttons
// and call their delegate when a button is pressed. A shown action sheet is
// the process's presented sheet until a button is pressed; an alert goes
// through the platform's showAlert, which records it and presses its
// buttons (see platform.h).
#pragma once

#include <string>
#include <vector>

#include "platform/ui/view.h"

namespace zv::ui {

class UIActionSheet : public UIView {
 public:
  static constexpr const char* kClassName = "UIActionSheet";
  explicit UIActionSheet(rt::Class* isa) : UIView(isa) {}

  std::string title;
  // actionSheet:clickedButtonAtIndex:
  std::function<void(UIActionSheet&, int buttonIndex)> delegate;

  int addButtonWithTitle(std::string title);
  const std::vector<std::string>& buttons() const { return buttons_; }
  std::string buttonTitleAtIndex(int index) const;
  int cancelButtonIndex() const { return cancel_index_; }
  void setCancelButtonIndex(int index) { cancel_index_ = index; }
  int destructiveButtonIndex() const { return destructive_index_; }
  void setDestructiveButtonIndex(int index) { destructive_index_ = index; }

  // Presents the sheet over `view` (it becomes the presented sheet).
  void showInView(const std::shared_ptr<UIView>& view);
  bool isVisible() const;
  // A press of the button: the sheet closes, then the delegate runs.
  void dismissWithClickedButtonIndex(int index);

  // The sheet presented in the current process, if any.
  static std::shared_ptr<UIActionSheet> presented();
  // Over the whole screen (its frame in a window): the screen dimmed, the
  // buttons (real buttons: a tap dismisses the sheet with their index) in a
  // group at the bottom, cancel apart below them.
  void layoutSubviews() override;
  void draw(Canvas& canvas) const override;

 private:
  std::vector<std::string> buttons_;
  int cancel_index_ = -1;
  int destructive_index_ = -1;
  std::weak_ptr<UIView> shown_in_;
};

enum class AlertViewStyle { Default, PlainTextInput };

class UIAlertView : public UIView {
 public:
  static constexpr const char* kClassName = "UIAlertView";
  explicit UIAlertView(rt::Class* isa) : UIView(isa) {}

  AlertViewStyle alertViewStyle = AlertViewStyle::Default;
  // The text of the input field (textFieldAtIndex: 0) with the plain
  // text-input style; set from what the user typed before the delegate runs.
  std::string inputText;
  std::string title;
  std::string message;
  std::string cancelButtonTitle;
  std::vector<std::string> otherButtonTitles;
  // alertView:clickedButtonAtIndex: (cancel is 0 when there is one).
  std::function<void(UIAlertView&, int buttonIndex)> delegate;

  // Shows the alert through the platform.
  void show();
};

// The general pasteboard (UIPasteboard generalPasteboard), device-wide.
struct UIPasteboard {
  static std::string string();
  static void setString(const std::string& text);
};

}  // namespace zv::ui
