// The Recents list and the contacts screens of a simulated host as data:
// what each row shows (name, label with area and ring time, the avatar as
// the record whose picture it is or the placeholder, where the call-type
// icon sits), and a contact's card with its phone labels. Used by
// `zorvel phone` (tab:recents) and `zorvel contacts`.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "hosts/contacts/members.h"
#include "hosts/phone/recents.h"

namespace zv::cli {

// One object per row on screen, top first.
nlohmann::ordered_json recentsRows(hosts::RecentsViewController& recents);
// The list (rows on screen) or the card on top of `navigation`.
nlohmann::ordered_json contactsScreen(ui::UINavigationController& navigation);

// Text, one row per line, indented.
std::string renderRecents(const nlohmann::ordered_json& rows);
std::string renderContacts(const nlohmann::ordered_json& screen);

}  // namespace zv::cli
