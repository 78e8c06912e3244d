// Reader of the binary area database (layout in area_format.h).
//
// zvarea_load opens a file and keeps, on the heap, only the key index and -
// when it is no larger than `cacheLimit` bytes - the string block; range
// entries, records and uncached texts are read from the open file (pread,
// never a mapping) on every lookup. A malformed header, or a key index or
// cached string block that does not lie inside the file, gives null.
// Nothing in a file, however damaged, makes a lookup read or write outside
// its buffers: reads past the end of the file yield zeros and find nothing.
// Another process may shrink, truncate or rewrite the file while it is
// open: a file that has become shorter than its blocks need answers nothing
// until it is whole again, and nothing faults.
//
// zvarea_get returns the location and/or line-type text of a number, in a
// 104-byte buffer owned by the handle (valid until the next lookup on it or
// zvarea_unload), or null. A handle is not safe for concurrent use.
#pragma once

#include <cstdint>

namespace zv {

struct ZVAreaFile;

// Opens `path`; null on any failure (nothing is left open).
ZVAreaFile* zvarea_load(const char* path, unsigned cacheLimit);
// True when all four blocks the header points at lie inside the file (a
// truncated file loads, but finds nothing in its missing part).
bool zvarea_intact(const ZVAreaFile* area);
// Closes the handle; null is ignored.
void zvarea_unload(ZVAreaFile* area);
// Looks `number` (digits with an optional leading "+") up. flags: 1 the
// location, 2 the line type, 4 let length-bound (service number) records
// answer. The result never exceeds 103 characters.
const char* zvarea_get(ZVAreaFile* area, const char* number, int flags);
// Packs the key of the first `count` characters of `text`: low 16 bits the
// value of "1" + the first 4 characters, high 16 bits the value of "1" +
// characters 5 to min(count, 8) (0 when count < 5). Conversion stops at the
// first non-digit.
uint32_t zvarea_atoi(const char* text, int count);
// Three-way comparison of two u16 keys, for binary search.
int zvarea_cmp(const void* a, const void* b);

}  // namespace zv
