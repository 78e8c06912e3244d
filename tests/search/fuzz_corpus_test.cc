// Replays the committed fuzz corpora of the search's readers (reading table,
// persons cache, settings, platform rows, address-book pictures) through the
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

namespace {

using zv::testing::replayCorpus;

TEST(FuzzCorpusTest, ReadingTables) {
  EXPECT_GE(replayCorpus("t9_table", fuzzT9Table), 5);
}

TEST(FuzzCorpusTest, SettingsPropertyLists) {
  EXPECT_GE(replayCorpus("settings_plist", fuzzSettingsPlist), 5);
}

TEST(FuzzCorpusTest, PlatformDatabaseRows) {
  EXPECT_GE(replayCorpus("platform_rows", fuzzPlatformRows), 5);
}

TEST(FuzzCorpusTest, AddressBookPictures) {
  EXPECT_GE(replayCorpus("address_book_images", fuzzAddressBookImages), 5);
}

TEST(FuzzCorpusTest, PersonsCache) {
  EXPECT_GE(replayCorpus("person_cache", fuzzPersonCache), 5);
}

}  // namespace
