// The address-book objects the contacts screens hand out: a person record
// (ABRecord: its id, whether it has a picture, the picture's bytes), a list
// row's person (ABModelPerson: name and record) and the contact a card
// shows (ABContact: its record id). Registered by registerContactsClasses.
#pragma once

#include <string>

#include "hosts/contacts/contact_store.h"
#include "platform/runtime/object.h"

namespace zv::hosts {

class HostRecord : public rt::Object {
 public:
  static constexpr const char* kClassName = "ABRecord";
  explicit HostRecord(rt::Class* isa) : rt::Object(isa) {}
  int32_t recordId = -1;
  bool hasImage = false;
};

class ModelPerson : public rt::Object {
 public:
  static constexpr const char* kClassName = "ABModelPerson";
  explicit ModelPerson(rt::Class* isa) : rt::Object(isa) {}
  std::string name;
  std::shared_ptr<HostRecord> record;
};

class ContactObject : public rt::Object {
 public:
  static constexpr const char* kClassName = "ABContact";
  explicit ContactObject(rt::Class* isa) : rt::Object(isa) {}
  Contact contact;
};

void registerRecordClasses();
// A record object for a contact (null for record id -1).
std::shared_ptr<HostRecord> makeRecord(const Contact& contact);

}  // namespace zv::hosts
