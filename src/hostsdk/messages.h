// The Messages application's classes and selectors ("com.apple.MobileSMS"),
// each declared once with its signature. The simulated Messages host
// defines them; the Messages hooks replace and send them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/runtime/message.h"
#include "platform/ui/image.h"
#include "platform/ui/table_view_controller.h"

namespace zv::sdk {

struct SMSApplication {
  static constexpr std::string_view kName = "SMSApplication";
};

// A conversation and the other party of it.
struct CKConversation {
  static constexpr std::string_view kName = "CKConversation";
  static constexpr rt::Message<rt::Id()> recipient{kName, "recipient"};
  static constexpr rt::Message<bool()> hasUnreadMessages{kName,
                                                         "hasUnreadMessages"};
  // Below 8.0 only: unread messages that came by iMessage.
  static constexpr rt::Message<bool()> hasUnreadiMessages{kName,
                                                          "hasUnreadiMessages"};
};

struct CKEntity {
  static constexpr std::string_view kName = "CKEntity";
  static constexpr rt::Message<std::string()> originalAddress{
      kName, "originalAddress"};
  // The contact's ABRecordRef (platform/db/ab_person.h), nil for a number
  // that belongs to no contact.
  static constexpr rt::Message<rt::Id()> abRecord{kName, "abRecord"};
  static constexpr rt::Message<std::string()> name{kName, "name"};
};

// The conversation list: a table of CKConversationListCell.
struct CKConversationListController {
  static constexpr std::string_view kName = "CKConversationListController";
};

struct CKConversationListCell {
  static constexpr std::string_view kName = "CKConversationListCell";
  static constexpr rt::Message<void(rt::Id)> updateContentsForConversation{
      kName, "updateContentsForConversation:"};
  static constexpr rt::Message<void()> layoutSubviews{kName, "layoutSubviews"};
  static constexpr rt::Message<bool()> isEditing{kName, "isEditing"};
  // UILabel, UILabel, UILabel, UIImageView.
  static constexpr rt::IvarName<rt::Id> fromLabel{kName, "_fromLabel"};
  static constexpr rt::IvarName<rt::Id> dateLabel{kName, "_dateLabel"};
  static constexpr rt::IvarName<rt::Id> summaryLabel{kName, "_summaryLabel"};
  static constexpr rt::IvarName<rt::Id> unreadIndicatorImageView{
      kName, "_unreadIndicatorImageView"};
};

// A conversation's messages, one CKTranscriptMessageCell per message.
struct CKTranscriptCollectionViewController {
  static constexpr std::string_view kName =
      "CKTranscriptCollectionViewController";
  static constexpr rt::Message<rt::Id(rt::Id, ui::IndexPath)>
      collectionViewCellForItemAtIndexPath{
          kName, "collectionView:cellForItemAtIndexPath:"};
  static constexpr rt::Message<rt::Id()> conversation{kName, "conversation"};
};

struct CKTranscriptMessageCell {
  static constexpr std::string_view kName = "CKTranscriptMessageCell";
  // 0 a received message, 1 one the user sent.
  static constexpr rt::Message<int()> orientation{kName, "orientation"};
  static constexpr rt::Message<ui::ImagePtr()> contactImage{kName,
                                                            "contactImage"};
  static constexpr rt::Message<void(bool)> setWantsContactImageLayout{
      kName, "setWantsContactImageLayout:"};
  static constexpr rt::Message<void(ui::ImagePtr)> setContactImage{
      kName, "setContactImage:"};
  static constexpr rt::Message<rt::Id()> contactImageView{kName,
                                                          "contactImageView"};
};

// A conversation's screen, and the new-message composer.
struct CKTranscriptController {
  static constexpr std::string_view kName = "CKTranscriptController";
  static constexpr rt::Message<void()> updateNavigationButtons{
      kName, "updateNavigationButtons"};
  static constexpr rt::Message<bool()> isNewRecipient{kName, "isNewRecipient"};
  static constexpr rt::Message<rt::Id()> navigationItem{kName,
                                                        "navigationItem"};
  static constexpr rt::Message<rt::Id()> navigationController{
      kName, "navigationController"};
  // 8.0 and later.
  static constexpr rt::Message<rt::Id()> composeRecipientSelectionController{
      kName, "composeRecipientSelectionController"};
  // Below 8.0.
  static constexpr rt::Message<rt::Id()> recipientSelectionController{
      kName, "recipientSelectionController"};
  static constexpr rt::Message<rt::Id()> collectionViewController{
      kName, "collectionViewController"};
};

struct CKRecipientSelectionController {
  static constexpr std::string_view kName = "CKRecipientSelectionController";
  static constexpr rt::Message<rt::Id()> toField{kName, "toField"};
};

// The "To:" field of the composer.
struct CKComposeRecipientView {
  static constexpr std::string_view kName = "CKComposeRecipientView";
  static constexpr rt::Message<std::vector<rt::Id>()> recipients{kName,
                                                                 "recipients"};
  static constexpr rt::Message<void(std::string)> addAddress{kName,
                                                             "addAddress:"};
  // 8.0 and later.
  static constexpr rt::Message<void()> removeAllRecipients{
      kName, "_removeAllRecipients"};
  // Below 8.0.
  static constexpr rt::Message<void()> removeRecipients{kName,
                                                        "removeRecipients"};
};

struct MFComposeRecipient {
  static constexpr std::string_view kName = "MFComposeRecipient";
  static constexpr rt::Message<std::string()> address{kName, "address"};
  static constexpr rt::Message<std::string()> compositeName{kName,
                                                            "compositeName"};
  static constexpr rt::Message<std::string()> label{kName, "label"};
};

}  // namespace zv::sdk
