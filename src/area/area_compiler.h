// Compiles an area source (area_source.h) into the binary area database
// read by area_file.h, and reads a binary database back into a source.
//
// The output is canonical: keys and sub-keys in ascending order, texts in
// the string block sorted (line types first, so that their offsets stay
// below the length-bound marks), so building the dump of a database gives
// the same bytes again.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "area/area_source.h"

namespace zv::area {

// Sizes and counts of a database, for `zorvel areadb info`.
struct Layout {
  uint32_t keyIndexOffset = 0, keyIndexSize = 0;
  uint32_t rangeTableOffset = 0, rangeTableSize = 0;
  uint32_t recordTableOffset = 0, recordTableSize = 0;
  uint32_t stringBlockOffset = 0, stringBlockSize = 0;
  size_t keys = 0, records = 0, usedRecords = 0, texts = 0;
  size_t longFormKeys = 0, lengthBoundRecords = 0;
};

// Builds the file image. Throws SourceError ("NAME:LINE: message") when
// the source cannot be represented (too many texts, a record whose texts
// are too long for one result, no records at all).
std::string compile(const Source& source, const std::string& name = "source");

// Reads a file image back. Throws SourceError (with `name`) when the bytes
// are not a database this format can describe.
Source decompile(const std::string& bytes, const std::string& name,
                 Layout* layout = nullptr);

}  // namespace zv::area
