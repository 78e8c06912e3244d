// Replays the committed fuzz corpora of the area reader, the area source
// compiler and decompiler, `zorvel area` input lines and the user's area
// overrides; under the sanitizer build any out-of-bounds access fails here.
#include "fuzz/area_reader_input.h"
#include "support/fuzz_replay.h"
#include "support/sim_fixture.h"

#define ZV_FUZZ_ENTRY static int fuzzAreaSource
#include "fuzz/area_source.cc"
#undef ZV_FUZZ_ENTRY
#define ZV_FUZZ_ENTRY static int fuzzAreaOverrides
#include "fuzz/area_overrides.cc"
#undef ZV_FUZZ_ENTRY
#define ZV_FUZZ_ENTRY static int fuzzAreaDatabase
#include "fuzz/area_database.cc"
#undef ZV_FUZZ_ENTRY
#define ZV_FUZZ_ENTRY static int fuzzAreaLines
#include "fuzz/area_lines.cc"
#undef ZV_FUZZ_ENTRY

namespace zv::testing {
namespace {

TEST(AreaFuzzCorpusTest, ReplaysEveryReaderInputAndSource) {
  TempRoot root;
  static std::string scratch;
  scratch = root.path() + "/db";
  EXPECT_GE(replayCorpus("area_reader",
                         [](const uint8_t* data, size_t size) {
                           fuzzing::runAreaReader(data, size, scratch);
                           return 0;
                         }),
            10);
  EXPECT_GE(replayCorpus("area_source", fuzzAreaSource), 5);
  EXPECT_GE(replayCorpus("area_overrides", fuzzAreaOverrides), 5);
  EXPECT_GE(replayCorpus("area_database", fuzzAreaDatabase), 4);
  EXPECT_GE(replayCorpus("area_lines", fuzzAreaLines), 5);
}

}  // namespace
}  // namespace zv::testing
