#include "hosts/messages/composer.h"

#include "hosts/messages/transcript.h"
#include "hostsdk/messages.h"
#include "platform/db/ab_person.h"
#include "platform/db/phone_labels.h"
#include "platform/platform.h"
#include "platform/ui/canvas.h"

namespace zv::hosts {
namespace {

using Field = sdk::CKComposeRecipientView;
using Recipient = sdk::MFComposeRecipient;
using Transcript = sdk::CKTranscriptController;

void recipientsChanged(ComposeRecipientView& field) {
  if (auto composer = field.composer.lock())
    rt::send(composer, Transcript::updateNavigationButtons);
}

}  // namespace

void ComposeRecipientView::add(const std::string& address) {
  if (address.empty()) return;
  auto r = std::dynamic_pointer_cast<ComposeRecipient>(
      rt::alloc(rt::getClass(Recipient::kName)));
  r->address = address;
  if (auto person = platform_schema::personForNumber(address)) {
    r->compositeName = person->compositeName;
    r->label = person->label.empty() ? "" : copyLocalizedLabel(person->label);
  }
  recipients.push_back(std::move(r));
  recipientsChanged(*this);
}

void ComposeRecipientView::removeAll() {
  recipients.clear();
  recipientsChanged(*this);
}

void ComposeRecipientView::draw(ui::Canvas& canvas) const {
  const auto size = frame().size;
  canvas.text({{15, 0}, {30, size.height}}, "To:", {"Helvetica", 15},
              {0.56, 0.56, 0.58, 1});
  std::string names;
  for (const auto& r : recipients)
    names += (names.empty() ? "" : ", ") +
             (r->compositeName.empty() ? r->address : r->compositeName);
  canvas.text({{45, 0}, {size.width - 60, size.height}}, names,
              {"Helvetica", 15}, ui::kTintColor);
  canvas.fill(
      {{0, size.height - canvas.hairline()}, {size.width, canvas.hairline()}},
      {0.78, 0.78, 0.8, 1});
}

void attachComposer(TranscriptController& composer) {
  auto selection = std::dynamic_pointer_cast<RecipientSelectionController>(
      rt::alloc(rt::getClass(sdk::CKRecipientSelectionController::kName)));
  selection->toField = std::dynamic_pointer_cast<ComposeRecipientView>(
      rt::alloc(rt::getClass(Field::kName)));
  selection->toField->composer = std::static_pointer_cast<TranscriptController>(
      composer.shared_from_this());
  composer.recipientSelection = selection;
  composer.toField = selection->toField;
  // The To: line across the top of the new message.
  composer.toField->setFrame(
      {{0, 0}, {platform::current().device().screenPoints.width, 44}});
  composer.view()->addSubview(composer.toField);
}

void registerComposerClasses(bool legacy) {
  rt::registerClass<ComposeRecipient>(Recipient::kName);
  rt::define(Recipient::address, [](const rt::Id& s) {
    return ui::self<ComposeRecipient>(s).address;
  });
  rt::define(Recipient::compositeName, [](const rt::Id& s) {
    return ui::self<ComposeRecipient>(s).compositeName;
  });
  rt::define(Recipient::label, [](const rt::Id& s) {
    return ui::self<ComposeRecipient>(s).label;
  });

  rt::registerClass<ComposeRecipientView>(Field::kName, "UIView");
  rt::define(Field::recipients, [](const rt::Id& s) {
    std::vector<rt::Id> out;
    for (const auto& r : ui::self<ComposeRecipientView>(s).recipients)
      out.push_back(r);
    return out;
  });
  rt::define(Field::addAddress, [](const rt::Id& s, std::string address) {
    ui::self<ComposeRecipientView>(s).add(address);
  });
  if (legacy)
    rt::define(Field::removeRecipients, [](const rt::Id& s) {
      ui::self<ComposeRecipientView>(s).removeAll();
    });
  else
    rt::define(Field::removeAllRecipients, [](const rt::Id& s) {
      ui::self<ComposeRecipientView>(s).removeAll();
    });

  rt::registerClass<RecipientSelectionController>(
      sdk::CKRecipientSelectionController::kName);
  rt::define(sdk::CKRecipientSelectionController::toField, [](const rt::Id& s) {
    return rt::Id(ui::self<RecipientSelectionController>(s).toField);
  });
  const auto& selection = legacy
                              ? Transcript::recipientSelectionController
                              : Transcript::composeRecipientSelectionController;
  rt::define(selection, [](const rt::Id& s) {
    return ui::self<TranscriptController>(s).recipientSelection;
  });
}

}  // namespace zv::hosts
