// What ZVSMSController needs of the Messages application, as one interface:
// the conversation-list cell's parts, a conversation's recipient and unread
// state, the transcript's message cells, and the new-message composer with
// its recipient field. The Messages hooks implement it with the host's
// selectors and instance variables, so the controller never names a host
// class or selector; tests implement it with plain objects.
//
// Every call takes the host object it asks about; a missing part answers
// null, false, -1 or an empty list, never an error.
#pragma once

#include <array>
#include <memory>
#include <string>
#include <vector>

#include "platform/runtime/object.h"
#include "platform/ui/image.h"
#include "platform/ui/label.h"
#include "platform/ui/table_view.h"
#include "platform/ui/view_controller.h"
#include "search/address_book.h"

namespace zv {

// One recipient of the composer: address, composite name, label.
using SMSRecipient = std::array<std::string, 3>;

class ZVSMSHost {
 public:
  virtual ~ZVSMSHost() = default;

  // --- Conversation list cell -------------------------------------------
  // The cell as a table cell (content view, image view, separator inset).
  virtual std::shared_ptr<ui::UITableViewCell> listCell(const rt::Id& cell) = 0;
  // Its instance variables "_fromLabel", "_dateLabel", "_summaryLabel",
  // "_unreadIndicatorImageView"; null when the cell has none.
  virtual std::shared_ptr<ui::UILabel> fromLabel(const rt::Id& cell) = 0;
  virtual std::shared_ptr<ui::UILabel> dateLabel(const rt::Id& cell) = 0;
  virtual std::shared_ptr<ui::UILabel> summaryLabel(const rt::Id& cell) = 0;
  virtual std::shared_ptr<ui::UIView> unreadIndicator(const rt::Id& cell) = 0;
  virtual bool isEditing(const rt::Id& cell) = 0;

  // --- Conversation -------------------------------------------------------
  // The recipient's originalAddress ("" when none).
  virtual std::string recipientAddress(const rt::Id& conversation) = 0;
  // The recipient's abRecord; null when the number belongs to no contact.
  virtual std::shared_ptr<const ABPersonRecord> recipientRecord(
      const rt::Id& conversation) = 0;
  virtual bool hasUnreadMessages(const rt::Id& conversation) = 0;
  // Below system 8.0 only.
  virtual bool hasUnreadiMessages(const rt::Id& conversation) = 0;

  // --- Transcript -----------------------------------------------------------
  // Whether the cell is a transcript message cell (CKTranscriptMessageCell).
  virtual bool isMessageCell(const rt::Id& cell) = 0;
  virtual ui::ImagePtr contactImage(const rt::Id& cell) = 0;
  // Non-zero for a message the user sent.
  virtual int orientation(const rt::Id& cell) = 0;
  virtual void setWantsContactImageLayout(const rt::Id& cell, bool wants) = 0;
  virtual void setContactImage(const rt::Id& cell, ui::ImagePtr image) = 0;
  virtual std::shared_ptr<ui::UIView> contactImageView(const rt::Id& cell) = 0;
  // The record id of the conversation shown by a transcript collection
  // controller: its single recipient's abRecord, -1 without one.
  virtual int32_t transcriptRecordId(const rt::Id& transcript) = 0;

  // --- Composer -------------------------------------------------------------
  // isNewRecipient: a message being composed.
  virtual bool isNewRecipient(const rt::Id& composer) = 0;
  // The composer's navigation item, and the controller it is presented from
  // (its navigation controller).
  virtual std::shared_ptr<ui::UINavigationItem> navigationItem(
      const rt::Id& composer) = 0;
  virtual std::shared_ptr<ui::UIViewController> presentingController(
      const rt::Id& composer) = 0;
  // The toField of the composer's recipient controller:
  // composeRecipientSelectionController when `compose` (8.0 and later),
  // recipientSelectionController otherwise. Null when there is none.
  virtual rt::Id toField(const rt::Id& composer, bool compose) = 0;
  // The field's "recipients", in order.
  virtual std::vector<SMSRecipient> recipients(const rt::Id& field) = 0;
  // _removeAllRecipients when `modern` (8.0 and later), removeRecipients
  // otherwise.
  virtual void removeAllRecipients(const rt::Id& field, bool modern) = 0;
  virtual void addAddress(const rt::Id& field, const std::string& address) = 0;
};

}  // namespace zv
