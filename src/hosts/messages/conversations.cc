#include "hosts/messages/conversations.h"

#include <algorithm>
#include <map>

#include "hostsdk/messages.h"
#include "platform/db/messages_schema.h"
#include "platform/db/sqlite_db.h"
#include "platform/platform.h"

namespace zv::hosts {
namespace {

using Conversation = sdk::CKConversation;
using Entity = sdk::CKEntity;

constexpr char kChatsQuery[] =
    "SELECT chat.ROWID, handle.id FROM chat "
    "JOIN chat_handle_join ON chat_handle_join.chat_id = chat.ROWID "
    "JOIN handle ON handle.ROWID = chat_handle_join.handle_id "
    "ORDER BY chat.ROWID";
constexpr char kMessagesQuery[] =
    "SELECT message.text, message.date, message.is_from_me, message.is_read, "
    "message.service FROM message JOIN chat_message_join ON "
    "chat_message_join.message_id = message.ROWID WHERE "
    "chat_message_join.chat_id = ? ORDER BY message.date, message.ROWID";

}  // namespace

std::string MessagesEntity::displayName() const {
  if (person && !person->compositeName.empty()) return person->compositeName;
  return originalAddress;
}

bool MessagesConversation::hasUnread(bool iMessage) const {
  for (const auto& m : messages)
    if (!m.fromMe && !m.read && m.iMessage == iMessage) return true;
  return false;
}

void registerConversationClasses(bool legacy) {
  rt::registerClass<MessagesEntity>(Entity::kName);
  rt::define(Entity::originalAddress, [](const rt::Id& s) {
    return ui::self<MessagesEntity>(s).originalAddress;
  });
  rt::define(Entity::abRecord, [](const rt::Id& s) {
    return rt::Id(ui::self<MessagesEntity>(s).person);
  });
  rt::define(Entity::name, [](const rt::Id& s) {
    return ui::self<MessagesEntity>(s).displayName();
  });
  rt::registerClass<MessagesConversation>(Conversation::kName);
  rt::define(Conversation::recipient, [](const rt::Id& s) {
    return rt::Id(ui::self<MessagesConversation>(s).recipient);
  });
  if (legacy) {
    // Before 8.0 the list counts SMS and iMessage apart.
    rt::define(Conversation::hasUnreadMessages, [](const rt::Id& s) {
      return ui::self<MessagesConversation>(s).hasUnread(false);
    });
    rt::define(Conversation::hasUnreadiMessages, [](const rt::Id& s) {
      return ui::self<MessagesConversation>(s).hasUnread(true);
    });
  } else {
    rt::define(Conversation::hasUnreadMessages, [](const rt::Id& s) {
      auto& c = ui::self<MessagesConversation>(s);
      return c.hasUnread(false) || c.hasUnread(true);
    });
  }
}

std::shared_ptr<MessagesEntity> entityForAddress(const std::string& address) {
  auto entity = std::dynamic_pointer_cast<MessagesEntity>(
      rt::alloc(rt::getClass(Entity::kName)));
  entity->originalAddress = address;
  entity->person = platform_schema::personForNumber(address);
  return entity;
}

std::vector<std::shared_ptr<MessagesConversation>> loadConversations() {
  std::vector<std::shared_ptr<MessagesConversation>> out;
  sql::Database db(platform::current().path(messages_schema::kMessagesDbPath));
  sql::Statement chats(db, kChatsQuery);
  std::map<int64_t, bool> seen;
  while (chats.step()) {
    const int64_t chat = chats.int64(0);
    // A group chat has several handles; the list shows its first.
    if (!seen.emplace(chat, true).second) continue;
    auto conversation = std::dynamic_pointer_cast<MessagesConversation>(
        rt::alloc(rt::getClass(Conversation::kName)));
    conversation->recipient = entityForAddress(chats.text(1).value_or(""));
    sql::Statement messages(db, kMessagesQuery);
    messages.bind(1, chat);
    while (messages.step()) {
      conversation->messages.push_back(
          {messages.text(0).value_or(""), messages.real(1),
           messages.int64(2) != 0, messages.int64(3) != 0,
           messages.text(4).value_or("") == messages_schema::kServiceIMessage});
    }
    if (!conversation->messages.empty()) out.push_back(std::move(conversation));
  }
  std::stable_sort(out.begin(), out.end(), [](const auto& a, const auto& b) {
    return a->messages.back().date > b->messages.back().date;
  });
  return out;
}

}  // namespace zv::hosts
