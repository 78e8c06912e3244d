// The saved recipient lists, "/var/mobile/Library/Preferences/
// zorvel.recipients.plist": a dictionary from the name the user typed to the
// list's recipients, each an array of three texts (address, composite name,
// label).
//
// The file is shared with other processes and may be damaged, so it is read
// afresh before every change and written back whole and atomically. Reading
// is forgiving: a missing, truncated or unparsable file is an empty
// dictionary; a list whose value is not an array is skipped, and inside a
// list every recipient that is not an array starting with three texts
// (without NUL bytes, which the XML file cannot hold) is skipped (a list
// left with none is skipped too). So the next save writes a
// valid file with every good list that was there.
#pragma once

#include <string>
#include <vector>

#include "messages/sms_host.h"
#include "platform/value.h"

namespace zv::recipients_file {

inline constexpr char kRecipientsPath[] =
    "/var/mobile/Library/Preferences/zorvel.recipients.plist";

// The good lists of the file, recipients trimmed to their three texts.
Dict read();
// Writes the dictionary atomically; false when the file could not be
// written (the old file is then unchanged).
bool write(const Dict& lists);

// The recipients of one list value (empty when it is not a list).
std::vector<SMSRecipient> recipientsOf(const Value& list);
// A list value holding `recipients`.
Value listValue(const std::vector<SMSRecipient>& recipients);

}  // namespace zv::recipients_file
