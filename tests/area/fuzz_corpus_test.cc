// Replays the committed fuzz corpus of the area reader; under the sanitizer
// build any out-of-bounds access in the reader fails here.
#include <filesystem>
#include <fstream>
#include <iterator>

#include "fuzz/area_reader_input.h"
#include "support/device_files.h"
#include "support/sim_fixture.h"

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

}  // namespace
}  // namespace zv::testing
