// Replays the committed fuzz corpora of the reading-table and persons-cache
// readers through the fuzz targets' own bodies (under ASan in the sanitizer
// build), so every build exercises the malformed inputs.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "support/device_files.h"

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

namespace {

int replay(const char* corpus, int (*target)(const uint8_t*, size_t)) {
  int files = 0;
  auto dir = std::filesystem::path(ZV_SOURCE_DIR) / "fuzz/corpus" / corpus;
  for (const auto& entry : std::filesystem::directory_iterator(dir)) {
    std::string bytes = zv::testing::readFile(entry.path());
    EXPECT_EQ(
        target(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()), 0)
        << entry.path();
    ++files;
  }
  return files;
}

TEST(FuzzCorpusTest, ReadingTables) {
  EXPECT_GE(replay("t9_table", fuzzT9Table), 5);
}

TEST(FuzzCorpusTest, SettingsPropertyLists) {
  EXPECT_GE(replay("settings_plist", fuzzSettingsPlist), 5);
}

TEST(FuzzCorpusTest, PlatformDatabaseRows) {
  EXPECT_GE(replay("platform_rows", fuzzPlatformRows), 5);
}

TEST(FuzzCorpusTest, PersonsCache) {
  EXPECT_GE(replay("person_cache", fuzzPersonCache), 5);
}

}  // namespace
