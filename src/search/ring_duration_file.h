// The ring-duration file shared by the processes that record and show ring
// times: a property-list dictionary, call-date key -> ring seconds.
//
// Several processes change it. Every change is a read-modify-write of the
// whole file under an advisory lock (flock on "<file>.lock" beside it), and
// the file is replaced atomically (temporary file + rename): a reader never
// sees a torn file, and two writers at the same moment both keep their
// entries. Paths are host paths.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace zv::ring_duration_file {

// Stores `seconds` under `key` unless the file already holds a non-zero
// value there (the first duration recorded for a call wins: kKept). A
// missing or unreadable file counts as empty. kNotWritten when the lock or
// the file could not be written. Waits for the lock as long as another
// process holds it.
enum class Stored { kWritten, kKept, kNotWritten, kBusy };
Stored storeFirst(const std::string& path, const std::string& key,
                  int64_t seconds);

// The same without waiting: kBusy, having done nothing, when another
// process holds the lock (the main thread, deciding on calls, must not
// wait on a file lock; it hands the store to a background thread).
Stored storeFirstNow(const std::string& path, const std::string& key,
                     int64_t seconds);

// Removes `keys` from the file; the file is rewritten only when one of them
// was present. True when it was rewritten.
bool remove(const std::string& path, const std::vector<std::string>& keys);

}  // namespace zv::ring_duration_file
