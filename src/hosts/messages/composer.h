// The new-message composer of the Messages application: the transcript
// controller without a conversation (hosts/messages/transcript.h), with a
// recipient selection controller whose "To:" field (CKComposeRecipientView)
// holds the recipients (MFComposeRecipient: address, composite name, label).
// Adding an address looks its contact up; every change of the recipients
// makes the composer update its navigation buttons, as the platform's does.
// From 8.0 the composer reaches the controller as
// composeRecipientSelectionController and the field empties with
// _removeAllRecipients; before, recipientSelectionController and
// removeRecipients.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/ui/view.h"

namespace zv::hosts {

class TranscriptController;

class ComposeRecipient : public rt::Object {
 public:
  static constexpr const char* kClassName = "MFComposeRecipient";
  explicit ComposeRecipient(rt::Class* isa) : rt::Object(isa) {}
  std::string address, compositeName, label;
};

class ComposeRecipientView : public ui::UIView {
 public:
  static constexpr const char* kClassName = "CKComposeRecipientView";
  explicit ComposeRecipientView(rt::Class* isa) : ui::UIView(isa) {}
  std::vector<std::shared_ptr<ComposeRecipient>> recipients;
  std::weak_ptr<TranscriptController> composer;
  void add(const std::string& address);
  void removeAll();
  // "To:" and the recipients' names (their addresses when unnamed), with a
  // line under them.
  void draw(ui::Canvas& canvas) const override;
};

class RecipientSelectionController : public rt::Object {
 public:
  static constexpr const char* kClassName = "CKRecipientSelectionController";
  explicit RecipientSelectionController(rt::Class* isa) : rt::Object(isa) {}
  std::shared_ptr<ComposeRecipientView> toField;
};

// Gives a composer its recipient controller and empty "To:" field.
void attachComposer(TranscriptController& composer);
void registerComposerClasses(bool legacy);

}  // namespace zv::hosts
