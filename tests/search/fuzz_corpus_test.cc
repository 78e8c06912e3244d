// Replays the committed fuzz corpora of the search's readers (reading table,
// persons cache, settings, platform rows, address-book pictures, ring
// durations, priority list, keypad flags and table overlay) through the
// fuzz targets' own bodies (under ASan in the sanitizer build).
#include <gtest/gtest.h>

#include "support/fuzz_replay.h"

#define ZV_FUZZ_ENTRY static int fuzzT9Table
#include "fuzz/t9_table.cc"
#undef ZV_FUZZ_ENTRY
#define ZV_FUZZ_ENTRY static int fuzzPersonCache
#include "fuzz/person_cache.cc"
#undef ZV_FUZZ_ENTRY
#define ZV_FUZZ_ENTRY static int fuzzSettingsPlist
#include "fuzz/settings_plist.cc"
#undef ZV_FUZZ_ENTRY
#define ZV_FUZZ_ENTRY static int fuzzPlatformRows
#include "fuzz/platform_rows.cc"
#undef ZV_FUZZ_ENTRY
#define ZV_FUZZ_ENTRY static int fuzzAddressBookImages
#include "fuzz/address_book_images.cc"
#undef ZV_FUZZ_ENTRY
#define ZV_FUZZ_ENTRY static int fuzzRingDurationFile
#include "fuzz/ring_duration_file.cc"
#undef ZV_FUZZ_ENTRY
#define ZV_FUZZ_ENTRY static int fuzzSearchFiles
#include "fuzz/search_files.cc"
#undef ZV_FUZZ_ENTRY

namespace {

TEST(FuzzCorpusTest, EveryReaderTakesItsCorpus) {
  const std::pair<const char*, int (*)(const uint8_t*, size_t)> targets[] = {
      {"t9_table", fuzzT9Table},
      {"settings_plist", fuzzSettingsPlist},
      {"platform_rows", fuzzPlatformRows},
      {"address_book_images", fuzzAddressBookImages},
      {"person_cache", fuzzPersonCache},
      {"ring_duration_file", fuzzRingDurationFile},
      {"search_files", fuzzSearchFiles}};
  for (const auto& [corpus, target] : targets)
    EXPECT_GE(zv::testing::replayCorpus(corpus, target), 5) << corpus;
}

}  // namespace
