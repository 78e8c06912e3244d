// Property-list files through libplist: XML and binary are both read; writes
// are XML, atomic (a temporary file in the same folder, then rename), so a
// reader in another process never sees a torn file.
//
// Paths here are host paths; map device paths with Platform::path first.
#pragma once

#include <optional>
#include <string>

#include "platform/value.h"

namespace zv::plist {

// Parses bytes as a property list (XML or binary); nullopt when they are not.
// Linear in the size of the list. Texts and dictionary keys of a binary list
// are read whole, NUL bytes included.
std::optional<Value> parse(const std::string& bytes);
// Serialises a value as an XML property list.
std::string toXml(const Value& value);

// Reads a whole file; nullopt when it is missing or does not parse.
std::optional<Value> readFile(const std::string& path);
// Reads a file whose top level is a dictionary; nullopt otherwise.
std::optional<Dict> readDictionary(const std::string& path);
// Writes atomically, creating missing parent folders; dates keep their
// whole seconds (all an XML list holds). False on any failure,
// and for a value an XML list cannot carry as read, so a write never changes
// what it does not own: a text or key holding a NUL byte (it would be cut
// short without a word), a date beyond libplist's 32-bit seconds, or an
// object of a kind with no value here (a binary list's UIDs and sets).
bool writeFile(const std::string& path, const Value& value);

// Reads a whole file into `out`; false when it cannot be read.
bool readBytes(const std::string& path, std::string& out);
// Writes bytes atomically (temporary file + rename); false on failure.
bool writeBytesAtomically(const std::string& path, const std::string& bytes);

}  // namespace zv::plist
