// Replays the committed fuzz corpus of the area reader; under the sanitizer
// build any out-of-bounds access in the reader fails here.
#include <filesystem>
#include <fstream>
#include <iterator>

#include "fuzz/area_reader_input.h"
#include "support/device_files.h"
#include "support/sim_fixture.h"

#define ZV_FUZZ_ENTRY static int fuzzAreaSource
#include "fuzz/area_source.cc"
#undef ZV_FUZZ_ENTRY

namespace zv::testing {
namespace {

TEST(AreaFuzzCorpusTest, ReplaysEveryInput) {
  TempRoot root;
  auto dir = std::filesystem::path(ZV_SOURCE_DIR) / "fuzz/corpus/area_reader";
  int inputs = 0;
  for (const auto& entry : std::filesystem::directory_iterator(dir)) {
    std::string bytes = readFile(entry.path());
    fuzzing::runAreaReader(reinterpret_cast<const uint8_t*>(bytes.data()),
                           bytes.size(), root.path() + "/db");
    ++inputs;
  }
  EXPECT_GE(inputs, 10);
}

TEST(AreaFuzzCorpusTest, ReplaysEverySource) {
  auto dir = std::filesystem::path(ZV_SOURCE_DIR) / "fuzz/corpus/area_source";
  int inputs = 0;
  for (const auto& entry : std::filesystem::directory_iterator(dir)) {
    std::ifstream in(entry.path(), std::ios::binary);
    std::string bytes((std::istreambuf_iterator<char>(in)), {});
    EXPECT_EQ(fuzzAreaSource(reinterpret_cast<const uint8_t*>(bytes.data()),
                             bytes.size()),
              0);
    ++inputs;
  }
  EXPECT_GE(inputs, 5);
}

}  // namespace
}  // namespace zv::testing
