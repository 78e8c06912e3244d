#include "hosts/messages/transcript.h"

#include "hosts/messages/composer.h"
#include "hostsdk/messages.h"
#include "platform/ui/navigation_item.h"

namespace zv::hosts {
namespace {

using Transcript = sdk::CKTranscriptController;
using Collection = sdk::CKTranscriptCollectionViewController;
using MessageCell = sdk::CKTranscriptMessageCell;

constexpr double kPictureSide = 28;
constexpr double kBubbleHeight = 36;
// Room between the balloon's edge and its text, each side.
constexpr double kBubblePadding = 12;

}  // namespace

std::shared_ptr<TranscriptMessageCell> TranscriptMessageCell::make() {
  auto cell = std::dynamic_pointer_cast<TranscriptMessageCell>(
      rt::alloc(rt::getClass(MessageCell::kName)));
  cell->bubble = ui::make<ui::UILabel>();
  cell->bubble->setFont({".HelveticaNeueInterface-Regular", 17});
  cell->contactImageView = ui::make<ui::UIImageView>();
  cell->contactImageView->setHidden(true);
  cell->balloon = ui::make<ui::UIView>();
  cell->balloon->setCornerRadius(kBubbleHeight / 2);
  cell->balloon->addSubview(cell->bubble);
  cell->addSubview(cell->balloon);
  cell->addSubview(cell->contactImageView);
  return cell;
}

void TranscriptMessageCell::layout(double width) {
  setSize(width, kBubbleHeight + 8);
  bubble->sizeToFit();
  const double inset = wantsContactImageLayout ? 8 + kPictureSide + 6 : 10;
  const double bubbleWidth =
      std::min(bubble->frame().size.width + 2 * kBubblePadding, width * 0.7);
  const double x = orientation != 0 ? width - inset - bubbleWidth : inset;
  balloon->setFrame({{x, 4}, {bubbleWidth, kBubbleHeight}});
  bubble->setFrame(
      {{kBubblePadding, 0}, {bubbleWidth - 2 * kBubblePadding, kBubbleHeight}});
  bubble->setTextColor(orientation != 0 ? ui::Color{1, 1, 1, 1}
                                        : ui::Color{0, 0, 0, 1});
  balloon->setBackgroundColor(orientation != 0 ? ui::Color{0.2, 0.78, 0.35, 1}
                                               : ui::Color{0.9, 0.9, 0.92, 1});
  contactImageView->setImage(contactImage);
  contactImageView->setHidden(!wantsContactImageLayout || !contactImage);
  const double px = orientation != 0 ? width - 8 - kPictureSide : 8;
  contactImageView->setFrame(
      {{px, 4 + kBubbleHeight - kPictureSide}, {kPictureSide, kPictureSide}});
}

void TranscriptCollectionController::reload(double width) {
  if (!collectionView) collectionView = ui::make<ui::UIView>();
  for (const auto& c : cells) c->removeFromSuperview();
  cells.clear();
  double y = 0;
  const size_t count = conversation ? conversation->messages.size() : 0;
  auto self = shared_from_this();
  for (size_t i = 0; i < count; ++i) {
    auto cell = std::dynamic_pointer_cast<TranscriptMessageCell>(
        rt::send(self, Collection::collectionViewCellForItemAtIndexPath,
                 rt::Id(collectionView), ui::IndexPath{0, i}));
    if (!cell) continue;
    cell->layout(width);
    cell->setOrigin(0, y);
    y += cell->frame().size.height;
    collectionView->addSubview(cell);
    cells.push_back(cell);
  }
  collectionView->setFrame({{0, 64}, {width, y}});
}

std::shared_ptr<TranscriptController> TranscriptController::make(
    std::shared_ptr<MessagesConversation> conversation, double width) {
  auto t = std::dynamic_pointer_cast<TranscriptController>(
      rt::alloc(rt::getClass(Transcript::kName)));
  t->conversation = std::move(conversation);
  t->collection = std::dynamic_pointer_cast<TranscriptCollectionController>(
      rt::alloc(rt::getClass(Collection::kName)));
  t->collection->conversation = t->conversation;
  t->view()->setFrame({{0, 0}, {width, 0}});
  if (t->isNewRecipient()) attachComposer(*t);
  t->collection->reload(width);
  t->view()->addSubview(t->collection->collectionView);
  return t;
}

void TranscriptController::updateButtons() {
  auto item = navigationItem();
  if (isNewRecipient()) {
    item->title = "New Message";
    std::weak_ptr<TranscriptController> weak =
        std::static_pointer_cast<TranscriptController>(shared_from_this());
    item->rightBarButtonItem = ui::UIBarButtonItem::make(
        "Cancel", ui::BarButtonItemStyle::Plain, [weak](const rt::Id&) {
          if (auto me = weak.lock()) me->dismissViewControllerAnimated(true);
        });
  } else {
    item->title =
        conversation->recipient ? conversation->recipient->displayName() : "";
    item->rightBarButtonItem = ui::UIBarButtonItem::make(
        "Details", ui::BarButtonItemStyle::Plain, nullptr);
  }
}

void registerTranscriptClasses(bool legacy) {
  rt::registerClass<TranscriptMessageCell>(MessageCell::kName, "UIView");
  rt::define(MessageCell::orientation, [](const rt::Id& s) {
    return ui::self<TranscriptMessageCell>(s).orientation;
  });
  rt::define(MessageCell::contactImage, [](const rt::Id& s) {
    return ui::self<TranscriptMessageCell>(s).contactImage;
  });
  rt::define(MessageCell::setWantsContactImageLayout,
             [](const rt::Id& s, bool w) {
               ui::self<TranscriptMessageCell>(s).wantsContactImageLayout = w;
             });
  rt::define(MessageCell::setContactImage, [](const rt::Id& s, ui::ImagePtr i) {
    auto& cell = ui::self<TranscriptMessageCell>(s);
    cell.contactImage = std::move(i);
    cell.contactImageView->setImage(cell.contactImage);
  });
  rt::define(MessageCell::contactImageView, [](const rt::Id& s) {
    return rt::Id(ui::self<TranscriptMessageCell>(s).contactImageView);
  });

  rt::registerClass<TranscriptCollectionController>(Collection::kName,
                                                    "UIViewController");
  rt::define(Collection::conversation, [](const rt::Id& s) {
    return rt::Id(ui::self<TranscriptCollectionController>(s).conversation);
  });
  rt::define(
      Collection::collectionViewCellForItemAtIndexPath,
      [](const rt::Id& s, rt::Id, ui::IndexPath path) -> rt::Id {
        auto& c = ui::self<TranscriptCollectionController>(s);
        if (!c.conversation || path.row >= c.conversation->messages.size())
          return nullptr;
        const MessageItem& m = c.conversation->messages[path.row];
        auto cell = TranscriptMessageCell::make();
        cell->orientation = m.fromMe ? 1 : 0;
        cell->bubble->setText(m.text);
        return cell;
      });

  rt::registerClass<TranscriptController>(Transcript::kName,
                                          "UIViewController");
  rt::define(Transcript::updateNavigationButtons, [](const rt::Id& s) {
    ui::self<TranscriptController>(s).updateButtons();
  });
  rt::define(Transcript::isNewRecipient, [](const rt::Id& s) {
    return ui::self<TranscriptController>(s).isNewRecipient();
  });
  rt::define(Transcript::navigationItem, [](const rt::Id& s) {
    return rt::Id(ui::self<TranscriptController>(s).navigationItem());
  });
  rt::define(Transcript::navigationController, [](const rt::Id& s) {
    return rt::Id(ui::self<TranscriptController>(s).navigationController());
  });
  rt::define(Transcript::collectionViewController, [](const rt::Id& s) {
    return rt::Id(ui::self<TranscriptController>(s).collection);
  });
  // The screen refreshes its buttons whenever it appears.
  rt::addMethod<void(bool)>(rt::getClass(Transcript::kName),
                            "viewWillAppear:", [](const rt::Id& s, bool) {
                              rt::send(s, Transcript::updateNavigationButtons);
                            });
  registerComposerClasses(legacy);
}

}  // namespace zv::hosts
