// The Messages application's data: its conversations, read from the
// device's messages database (platform/db/messages_schema.h) newest first,
// each with its other party (CKEntity: the address as stored and, for a
// number in the address book, the contact's record) and its messages.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/db/ab_person.h"
#include "platform/runtime/object.h"

namespace zv::hosts {

struct MessageItem {
  std::string text;
  double date = 0;  // seconds since 2001
  bool fromMe = false;
  bool read = true;
  bool iMessage = false;
};

class MessagesEntity : public rt::Object {
 public:
  static constexpr const char* kClassName = "CKEntity";
  explicit MessagesEntity(rt::Class* isa) : rt::Object(isa) {}
  std::string originalAddress;
  std::shared_ptr<platform_schema::ABPersonRef> person;  // null: no contact
  // The contact's name, else the address.
  std::string displayName() const;
};

class MessagesConversation : public rt::Object {
 public:
  static constexpr const char* kClassName = "CKConversation";
  explicit MessagesConversation(rt::Class* isa) : rt::Object(isa) {}
  std::shared_ptr<MessagesEntity> recipient;
  std::vector<MessageItem> messages;  // oldest first
  bool hasUnread(bool iMessage) const;
};

// Registers CKConversation and CKEntity; `legacy` (below 8.0) adds
// hasUnreadiMessages and keeps iMessages out of hasUnreadMessages.
void registerConversationClasses(bool legacy);

// The conversations of the device's messages database, newest first; empty
// when it cannot be read.
std::vector<std::shared_ptr<MessagesConversation>> loadConversations();

// A recipient entity for an address (its contact looked up).
std::shared_ptr<MessagesEntity> entityForAddress(const std::string& address);

}  // namespace zv::hosts
