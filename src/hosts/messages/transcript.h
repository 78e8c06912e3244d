// A conversation's screen in the Messages application (CKTranscriptController)
// and its transcript (CKTranscriptCollectionViewController), which makes one
// CKTranscriptMessageCell per message through
// collectionView:cellForItemAtIndexPath:, sent as a runtime message so a
// replacement sees every cell. A message cell shows its text as a bubble on
// the left (received) or right (sent), and a contact picture beside it once
// asked to lay one out. The same controller, without a conversation, is the
// new-message composer (hosts/messages/composer.h).
#pragma once

#include <memory>
#include <vector>

#include "hosts/messages/conversations.h"
#include "platform/ui/label.h"
#include "platform/ui/view_controller.h"

namespace zv::hosts {

class ComposeRecipientView;

class TranscriptMessageCell : public ui::UIView {
 public:
  static constexpr const char* kClassName = "CKTranscriptMessageCell";
  explicit TranscriptMessageCell(rt::Class* isa) : ui::UIView(isa) {}
  static std::shared_ptr<TranscriptMessageCell> make();

  // The message's text, inside its rounded balloon.
  std::shared_ptr<ui::UILabel> bubble;
  std::shared_ptr<ui::UIView> balloon;
  std::shared_ptr<ui::UIImageView> contactImageView;
  int orientation = 0;  // 1: sent by the user
  bool wantsContactImageLayout = false;
  ui::ImagePtr contactImage;
  void layout(double width);
};

class TranscriptCollectionController : public ui::UIViewController {
 public:
  static constexpr const char* kClassName =
      "CKTranscriptCollectionViewController";
  explicit TranscriptCollectionController(rt::Class* isa)
      : ui::UIViewController(isa) {}

  std::shared_ptr<MessagesConversation> conversation;
  std::shared_ptr<ui::UIView> collectionView;
  // The cells shown, in message order, after reload().
  std::vector<std::shared_ptr<TranscriptMessageCell>> cells;
  // Asks for a cell per message and stacks them.
  void reload(double width);
};

class TranscriptController : public ui::UIViewController {
 public:
  static constexpr const char* kClassName = "CKTranscriptController";
  explicit TranscriptController(rt::Class* isa) : ui::UIViewController(isa) {}
  // A conversation's screen, or the composer when `conversation` is null.
  static std::shared_ptr<TranscriptController> make(
      std::shared_ptr<MessagesConversation> conversation, double width);

  std::shared_ptr<MessagesConversation> conversation;
  std::shared_ptr<TranscriptCollectionController> collection;
  // The composer's recipient controller and its "To:" field.
  rt::Id recipientSelection;
  std::shared_ptr<ComposeRecipientView> toField;

  bool isNewRecipient() const { return conversation == nullptr; }
  // The host's updateNavigationButtons.
  void updateButtons();
};

void registerTranscriptClasses(bool legacy);

}  // namespace zv::hosts
