// The saved recipient lists, "/var/mobile/Library/Preferences/
// zorvel.recipients.plist": a dictionary from the name the user typed to the
// list's recipients, each an array of three texts (address, composite name,
// label).
//
// The file is shared with other processes and with other versions of this
// screen, so it is read afresh before every change, only the changed key is
// ours to shape, and every other key is written back exactly as read. A
// missing, truncated or unparsable file is an empty dictionary. Lists are
// shown as forgivingly as they are kept: a recipient is an array whose
// first text is its address (name and label, when there, follow), or a
// plain text holding the address.
#pragma once

#include <string>
#include <vector>

#include "messages/sms_host.h"
#include "platform/value.h"

namespace zv::recipients_file {

inline constexpr char kRecipientsPath[] =
    "/var/mobile/Library/Preferences/zorvel.recipients.plist";

// The file's dictionary as read.
Dict read();
// Writes the dictionary atomically; false when the file could not be
// written (the old file is then unchanged). A text or key holding a NUL
// byte, which a binary file can carry, cannot be written: false too.
bool write(const Dict& lists);

// The recipients of one list value (empty when it is not a list); entries
// without an address are left out.
std::vector<SMSRecipient> recipientsOf(const Value& list);
// A list value holding `recipients`.
Value listValue(const std::vector<SMSRecipient>& recipients);

}  // namespace zv::recipients_file
