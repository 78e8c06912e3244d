// The display text of a stored phone label: what the platform's
// ABAddressBookCopyLocalizedLabel answers. The address book stores its
// built-in labels as keys ("_$!<Mobile>!$_") and user-made labels as typed.
// Built-in keys map to their English texts ("mobile"), which are then looked
// up in the host's "Zorvel" string table so that a translation can replace
// them; unknown keys lose their wrapper ("_$!<Satellite>!$_" gives
// Satellite); any other
// label is returned as stored.
#pragma once

#include <string>
#include <string_view>

namespace zv {

std::string copyLocalizedLabel(std::string_view label);

}  // namespace zv
