// The Messages application's conversation list: a table of
// CKConversationListCell, one per conversation, newest first. A cell shows
// the other party's name (or number) in its from label, the last message's
// date and text, and a dot while the conversation has unread messages; the
// host fills it with updateContentsForConversation: and places its labels in
// layoutSubviews, both sent as runtime messages so replacements see them.
// Tapping a row opens the conversation (hosts/messages/transcript.h).
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "hosts/messages/conversations.h"
#include "platform/ui/table_view_controller.h"

namespace zv::hosts {

class ConversationListCell : public ui::UITableViewCell {
 public:
  static constexpr const char* kClassName = "CKConversationListCell";
  static constexpr const char* kReuseIdentifier = "CKConversationListCell";
  static constexpr double kHeight = 76;
  explicit ConversationListCell(rt::Class* isa) : ui::UITableViewCell(isa) {}
  // A new cell with its labels (alloc + initWithStyle:reuseIdentifier:).
  static std::shared_ptr<ConversationListCell> make();

  std::shared_ptr<ui::UILabel> fromLabel, dateLabel, summaryLabel;
  std::shared_ptr<ui::UIImageView> unreadIndicator;
  bool editing = false;

  // The host's own work behind the runtime methods.
  void updateContents(const std::shared_ptr<MessagesConversation>& c);
  void layout();
};

class ConversationListController : public ui::UITableViewController {
 public:
  static constexpr const char* kClassName = "CKConversationListController";
  explicit ConversationListController(rt::Class* isa)
      : ui::UITableViewController(isa) {}
  static std::shared_ptr<ConversationListController> make(
      std::vector<std::shared_ptr<MessagesConversation>> conversations,
      double width);

  std::vector<std::shared_ptr<MessagesConversation>> conversations;
  // What a tap on a row does (the application opens the conversation).
  std::function<void(size_t row)> onOpen;

  size_t numberOfRowsInSection(ui::UITableView&, size_t) override {
    return conversations.size();
  }
  std::shared_ptr<ui::UITableViewCell> cellForRowAtIndexPath(
      ui::UITableView& table, ui::IndexPath path) override;
  void didSelectRowAtIndexPath(ui::UITableView&, ui::IndexPath path) override;
  void setEditing(bool editing, bool animated) override;
};

void registerConversationListClasses();

// The list's date text: "M/d/yy" of a date in seconds since 2001 (UTC).
std::string listDate(double date);

}  // namespace zv::hosts
