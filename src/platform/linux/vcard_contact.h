// A contact of Evolution Data Server or of a vCard file (2.1, 3.0, 4.0,
// parsed by libebook-contacts) in the form the device's address book stores
// (platform/db/contact_store.h): names, organisation, department, job
// title, nickname, birthday, note, picture, and the phone numbers and
// e-mail addresses with their labels mapped to the platform's label keys
// (CELL is "_$!<Mobile>!$_", WORK;FAX "_$!<WorkFAX>!$_", ...).
//
// Contact lists (groups) are not people and give nothing.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/db/contact_store.h"

typedef struct _EContact EContact;

namespace zv::platform {

// `idPrefix` + the contact's UID is its external identifier; a contact
// without a UID is named by its name and numbers instead, so that the same
// card imported twice is one contact.
std::optional<platform_schema::ExternalContact> externalContact(
    EContact* contact, const std::string& idPrefix);

// The cards of a .vcf file's text, in order. A card that does not parse is
// counted in `unreadable`.
std::vector<platform_schema::ExternalContact> contactsFromVCards(
    const std::string& text, const std::string& idPrefix, int* unreadable);

}  // namespace zv::platform
