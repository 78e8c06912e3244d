// The encoded-persons cache file, "/Library/Zorvel/persons": one line per
// person, nine tab-separated fields
//   recordId phoneType nameLength J P E F phoneNumber displayName
// ("%d\t%d\t%d\t%s\t%s\t%s\t%s\t%s\t%s\n", a null text written as
// "(null)"). Nothing is escaped: a tab or newline inside a name splits the
// line, and the reader simply skips lines that do not have nine fields.
//
// The reader takes lines as a 2048-byte line buffer would (a longer line is
// read in 2047-byte pieces, each a line of its own; a NUL byte ends the
// line's text), splits the text before the newline at its tabs into at
// most 10 pieces (empty ones included, so a person with an empty name
// survives the round trip; the last piece keeps any further tabs) and keeps
// lines with at least 9. It never reads outside the given bytes.
#pragma once

#include <string>
#include <string_view>

#include "search/searcher.h"

namespace zv {

// One cache line for `person`, newline included.
std::string formatCacheLine(const ZVPerson& person);

// Appends a person for every usable line of `bytes` to `out`.
void readPersonsCache(std::string_view bytes, ZVSearcher::PersonList& out);

}  // namespace zv
