// zvsms_init: areas and pictures in the Messages conversation list, pictures
// in a conversation, and the composer's Group button. Every row runs the
// host's method first and ZVSMSController after it; the controller reaches
// the host through RuntimeSMSHost, which reads the host's instance variables
// and sends its selectors (hostsdk/messages.h).
#include "core/hook.h"
#include "core/settings_catalogue.h"
#include "hooks/module_trace.h"
#include "hooks/modules.h"
#include "hostsdk/messages.h"
#include "messages/sms_controller.h"
#include "platform/db/ab_person.h"

namespace zv {
namespace {

using Cell = sdk::CKConversationListCell;
using Conversation = sdk::CKConversation;
using Entity = sdk::CKEntity;
using MessageCell = sdk::CKTranscriptMessageCell;
using Collection = sdk::CKTranscriptCollectionViewController;
using Transcript = sdk::CKTranscriptController;
using Field = sdk::CKComposeRecipientView;
using Recipient = sdk::MFComposeRecipient;

// A platform person record as the address-book service reads it.
class PersonRecord : public ABPersonRecord {
 public:
  explicit PersonRecord(std::shared_ptr<platform_schema::ABPersonRef> person)
      : person_(std::move(person)) {}
  int32_t recordId() const override { return person_->recordId; }
  bool hasImageData() const override { return person_->hasImageData(); }
  std::string copyImageData(int format) const override {
    return person_->copyImageData(format);
  }

 private:
  std::shared_ptr<platform_schema::ABPersonRef> person_;
};

template <typename T>
std::shared_ptr<T> ivarView(const rt::Id& object,
                            const rt::IvarName<rt::Id>& name) {
  return std::dynamic_pointer_cast<T>(rt::ivar(object, name).value_or(nullptr));
}

std::shared_ptr<platform_schema::ABPersonRef> personOf(
    const rt::Id& conversation) {
  rt::Id recipient = rt::trySend(conversation, Conversation::recipient);
  return rt::as<platform_schema::ABPersonRef>(
      rt::trySend(recipient, Entity::abRecord));
}

class RuntimeSMSHost : public ZVSMSHost {
 public:
  std::shared_ptr<ui::UITableViewCell> listCell(const rt::Id& cell) override {
    return rt::as<ui::UITableViewCell>(cell);
  }
  std::shared_ptr<ui::UILabel> fromLabel(const rt::Id& cell) override {
    return ivarView<ui::UILabel>(cell, Cell::fromLabel);
  }
  std::shared_ptr<ui::UILabel> dateLabel(const rt::Id& cell) override {
    return ivarView<ui::UILabel>(cell, Cell::dateLabel);
  }
  std::shared_ptr<ui::UILabel> summaryLabel(const rt::Id& cell) override {
    return ivarView<ui::UILabel>(cell, Cell::summaryLabel);
  }
  std::shared_ptr<ui::UIView> unreadIndicator(const rt::Id& cell) override {
    return ivarView<ui::UIView>(cell, Cell::unreadIndicatorImageView);
  }
  bool isEditing(const rt::Id& cell) override {
    return rt::trySend(cell, Cell::isEditing);
  }

  std::string recipientAddress(const rt::Id& conversation) override {
    return rt::trySend(rt::trySend(conversation, Conversation::recipient),
                       Entity::originalAddress);
  }
  std::shared_ptr<const ABPersonRecord> recipientRecord(
      const rt::Id& conversation) override {
    auto person = personOf(conversation);
    return person ? std::make_shared<PersonRecord>(person) : nullptr;
  }
  bool hasUnreadMessages(const rt::Id& conversation) override {
    return rt::trySend(conversation, Conversation::hasUnreadMessages);
  }
  bool hasUnreadiMessages(const rt::Id& conversation) override {
    return rt::trySend(conversation, Conversation::hasUnreadiMessages);
  }

  bool isMessageCell(const rt::Id& cell) override {
    rt::Class* cls = rt::getClass(MessageCell::kName);
    return cell && cls && cell->isa()->isSubclassOf(cls);
  }
  ui::ImagePtr contactImage(const rt::Id& cell) override {
    return rt::trySend(cell, MessageCell::contactImage);
  }
  int orientation(const rt::Id& cell) override {
    return rt::trySend(cell, MessageCell::orientation);
  }
  void setWantsContactImageLayout(const rt::Id& cell, bool wants) override {
    rt::trySend(cell, MessageCell::setWantsContactImageLayout, wants);
  }
  void setContactImage(const rt::Id& cell, ui::ImagePtr image) override {
    rt::trySend(cell, MessageCell::setContactImage, std::move(image));
  }
  std::shared_ptr<ui::UIView> contactImageView(const rt::Id& cell) override {
    return rt::as<ui::UIView>(rt::trySend(cell, MessageCell::contactImageView));
  }
  // The transcript's conversation has a single recipient: its contact.
  int32_t transcriptRecordId(const rt::Id& transcript) override {
    auto person = personOf(rt::trySend(transcript, Collection::conversation));
    return person ? person->recordId : -1;
  }

  bool isNewRecipient(const rt::Id& composer) override {
    return rt::trySend(composer, Transcript::isNewRecipient);
  }
  std::shared_ptr<ui::UINavigationItem> navigationItem(
      const rt::Id& composer) override {
    return rt::as<ui::UINavigationItem>(
        rt::trySend(composer, Transcript::navigationItem));
  }
  std::shared_ptr<ui::UIViewController> presentingController(
      const rt::Id& composer) override {
    return rt::as<ui::UIViewController>(
        rt::trySend(composer, Transcript::navigationController));
  }
  rt::Id toField(const rt::Id& composer, bool compose) override {
    rt::Id selection =
        compose
            ? rt::trySend(composer,
                          Transcript::composeRecipientSelectionController)
            : rt::trySend(composer, Transcript::recipientSelectionController);
    return rt::trySend(selection, sdk::CKRecipientSelectionController::toField);
  }
  std::vector<SMSRecipient> recipients(const rt::Id& field) override {
    std::vector<SMSRecipient> out;
    for (const rt::Id& r : rt::trySend(field, Field::recipients))
      out.push_back({rt::trySend(r, Recipient::address),
                     rt::trySend(r, Recipient::compositeName),
                     rt::trySend(r, Recipient::label)});
    return out;
  }
  void removeAllRecipients(const rt::Id& field, bool modern) override {
    if (modern)
      rt::send(field, Field::removeAllRecipients);
    else
      rt::send(field, Field::removeRecipients);
  }
  void addAddress(const rt::Id& field, const std::string& address) override {
    rt::send(field, Field::addAddress, address);
  }
};

}  // namespace

void zvsms_init() {
  runStartup("zvsms_init", [] {
    auto settings = ZVSMSSettings::sharedInstance();
    if (!settings) return;
    if (!settings->EnableArea() && !settings->EnableAvatar() &&
        !settings->SMSSelectGroup())
      return;
    auto c = ZVSMSController::sharedInstance();
    if (!c) return;
    c->setHost(std::make_shared<RuntimeSMSHost>());
    const auto kind = GuardKind::Alert;
    // clang-format off
    hook::hostFirst(kind, Cell::updateContentsForConversation, [c](const rt::Id& cell, rt::Id conversation) { c->areaCell(cell, conversation); c->avatarCell(cell, conversation); });
    hook::hostFirst(kind, Cell::layoutSubviews, [c](const rt::Id& cell) { c->avatarLayoutCell(cell); c->areaLayoutCell(cell); });
    hook::hostFirst(kind, Collection::collectionViewCellForItemAtIndexPath, [c](const rt::Id& self, rt::Id& cell, rt::Id, ui::IndexPath) { c->avatarChat(self, cell); });
    hook::hostFirst(kind, Transcript::updateNavigationButtons, [c](const rt::Id& self) { c->groupButton(self); });
    // clang-format on
  });
}

}  // namespace zv
