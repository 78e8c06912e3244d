// What the settings pane does to a device's files, for the commands that
// stand in for it on a Linux phone: read a property-list dictionary for an
// edit (a file that is there but does not parse, or is not a regular file,
// stops the command rather than being replaced and lost), write it back
// atomically, and tell running processes through the platform's
// system-wide notifications ("ZVSettingsChanged" and the like).
#pragma once

#include <string>

#include "platform/value.h"

namespace zv::cli {

// The dictionary at the device path, empty when the file is missing.
// Throws CommandError for a file that cannot be edited safely.
Dict readForEdit(const char* devicePath, const char* what);

// Writes the dictionary atomically (a temporary file, then rename);
// CommandError on failure.
void writeEdited(const char* devicePath, const Dict& dict);

// Posts `name` to every process of the device that listens.
void announce(const char* name);

}  // namespace zv::cli
