#include "hosts/messages/conversation_list.h"

#include <ctime>

#include "hostsdk/messages.h"
#include "platform/ui/messages.h"

namespace zv::hosts {
namespace {

using Cell = sdk::CKConversationListCell;

const ui::Font kFromFont{".HelveticaNeueInterface-MediumP4", 17};
const ui::Font kDateFont{".HelveticaNeueInterface-Regular", 15};
const ui::Font kSummaryFont{".HelveticaNeueInterface-Regular", 15};
const ui::Color kGrey{0.56, 0.56, 0.58, 1};
constexpr double kReferenceDate = 978307200.0;  // 2001-01-01 in Unix time

// The blue unread dot, 10 points at scale 2.
ui::ImagePtr unreadDot() {
  static const ui::ImagePtr dot = std::make_shared<const ui::Image>(
      ui::Image::filled(20, 20, 2, {0, 122, 255, 255}));
  return dot;
}

}  // namespace

std::string listDate(double date) {
  std::time_t t = static_cast<std::time_t>(date + kReferenceDate);
  std::tm tm{};
  gmtime_r(&t, &tm);
  char buf[32];
  std::snprintf(buf, sizeof buf, "%d/%d/%02d", tm.tm_mon + 1, tm.tm_mday,
                tm.tm_year % 100);
  return buf;
}

std::shared_ptr<ConversationListCell> ConversationListCell::make() {
  auto cell = std::dynamic_pointer_cast<ConversationListCell>(
      rt::alloc(rt::getClass(Cell::kName)));
  cell->setUp(ui::CellStyle::Default, kReuseIdentifier);
  cell->fromLabel = ui::make<ui::UILabel>();
  cell->fromLabel->setFont(kFromFont);
  cell->dateLabel = ui::make<ui::UILabel>();
  cell->dateLabel->setFont(kDateFont);
  cell->dateLabel->setTextColor(kGrey);
  cell->dateLabel->setTextAlignment(ui::TextAlignment::Right);
  cell->summaryLabel = ui::make<ui::UILabel>();
  cell->summaryLabel->setFont(kSummaryFont);
  cell->summaryLabel->setTextColor(kGrey);
  // Two lines of the last message, the second ending in "…" when cut.
  cell->summaryLabel->setNumberOfLines(2);
  cell->unreadIndicator = ui::make<ui::UIImageView>();
  cell->unreadIndicator->setImage(unreadDot());
  cell->unreadIndicator->setHidden(true);
  auto content = cell->contentView();
  for (const auto& v : std::initializer_list<std::shared_ptr<ui::UIView>>{
           cell->fromLabel, cell->dateLabel, cell->summaryLabel,
           cell->unreadIndicator})
    content->addSubview(v);
  rt::setIvar(cell, Cell::fromLabel, rt::Id(cell->fromLabel));
  rt::setIvar(cell, Cell::dateLabel, rt::Id(cell->dateLabel));
  rt::setIvar(cell, Cell::summaryLabel, rt::Id(cell->summaryLabel));
  rt::setIvar(cell, Cell::unreadIndicatorImageView,
              rt::Id(cell->unreadIndicator));
  return cell;
}

void ConversationListCell::updateContents(
    const std::shared_ptr<MessagesConversation>& c) {
  if (!c) return;
  fromLabel->setText(c->recipient ? c->recipient->displayName() : "");
  const MessageItem* last = c->messages.empty() ? nullptr : &c->messages.back();
  dateLabel->setText(last ? listDate(last->date) : "");
  summaryLabel->setText(last ? last->text : "");
  bool unread = rt::send(c, sdk::CKConversation::hasUnreadMessages);
  unread = unread || rt::trySend(c, sdk::CKConversation::hasUnreadiMessages);
  unreadIndicator->setHidden(!unread);
}

void ConversationListCell::layout() {
  const double width = frame().size.width > 0 ? frame().size.width : 320;
  contentView()->setFrame({{0, 0}, {width, kHeight}});
  dateLabel->sizeToFit();
  const double dateWidth = dateLabel->frame().size.width;
  const double dateX = width - 10 - dateWidth;
  dateLabel->setFrame({{dateX, 10}, {dateWidth, 20}});
  fromLabel->setFrame({{15, 10}, {dateX - 5 - 15, 20}});
  summaryLabel->setFrame({{15, 30}, {width - 15 - 30, 38}});
  unreadIndicator->setFrame({{3, 15}, {10, 10}});
  unreadIndicator->setCornerRadius(5);  // a dot
  imageView()->setFrame({{10, 13}, {50, 50}});
  setSeparatorInset({0, 15, 0, 0});
}

std::shared_ptr<ConversationListController> ConversationListController::make(
    std::vector<std::shared_ptr<MessagesConversation>> conversations,
    double width) {
  auto list = std::dynamic_pointer_cast<ConversationListController>(
      rt::alloc(rt::getClass(sdk::CKConversationListController::kName)));
  list->conversations = std::move(conversations);
  list->title = "Messages";
  // No height: every row is laid out, so the list can be read whole.
  list->tableView()->setFrame({{0, 64}, {width, 0}});
  list->tableView()->heightForRow = [](size_t) {
    return ConversationListCell::kHeight;
  };
  return list;
}

std::shared_ptr<ui::UITableViewCell>
ConversationListController::cellForRowAtIndexPath(ui::UITableView& table,
                                                  ui::IndexPath path) {
  auto cell = std::dynamic_pointer_cast<ConversationListCell>(
      table.dequeueReusableCellWithIdentifier(
          ConversationListCell::kReuseIdentifier));
  if (!cell) cell = ConversationListCell::make();
  cell->editing = isEditing();
  cell->setFrame(
      {{0, 0}, {table.frame().size.width, ConversationListCell::kHeight}});
  if (path.row < conversations.size())
    rt::send(cell, Cell::updateContentsForConversation,
             rt::Id(conversations[path.row]));
  rt::send(cell, Cell::layoutSubviews);
  return cell;
}

void ConversationListController::didSelectRowAtIndexPath(ui::UITableView&,
                                                         ui::IndexPath path) {
  deselectRowAtIndexPath(path, true);
  if (onOpen) onOpen(path.row);
}

void ConversationListController::setEditing(bool editing, bool animated) {
  ui::UITableViewController::setEditing(editing, animated);
  tableView()->reloadData();
}

void registerConversationListClasses() {
  rt::registerClass<ConversationListCell>(Cell::kName, "UITableViewCell");
  rt::define(Cell::updateContentsForConversation, [](const rt::Id& s,
                                                     rt::Id conversation) {
    ui::self<ConversationListCell>(s).updateContents(
        std::dynamic_pointer_cast<MessagesConversation>(conversation));
  });
  rt::define(Cell::layoutSubviews, [](const rt::Id& s) {
    ui::self<ConversationListCell>(s).layout();
  });
  rt::define(Cell::isEditing, [](const rt::Id& s) {
    return ui::self<ConversationListCell>(s).editing;
  });
  rt::registerClass<ConversationListController>(
      sdk::CKConversationListController::kName, "UITableViewController");
}

}  // namespace zv::hosts
