// Replays the committed fuzz corpora of the black and white lists and of the
// saved recipient lists through the fuzz targets' own bodies (this suite
// links every logic folder the two readers live in).
#include "support/fuzz_replay.h"

#define ZV_FUZZ_ENTRY static int fuzzBlockLists
#include "fuzz/block_lists.cc"
#undef ZV_FUZZ_ENTRY
#define ZV_FUZZ_ENTRY static int fuzzRecipients
#include "fuzz/recipients.cc"
#undef ZV_FUZZ_ENTRY

namespace {

using zv::testing::replayCorpus;

TEST(FuzzCorpusTest, BlackAndWhiteLists) {
  EXPECT_GE(replayCorpus("block_lists", fuzzBlockLists), 5);
}

TEST(FuzzCorpusTest, SavedRecipientLists) {
  EXPECT_GE(replayCorpus("recipients", fuzzRecipients), 5);
}

}  // namespace
