// Reading the saved recipient lists: what is read must survive the next
// save whole.
#include "messages/recipients_file.h"

#include <gtest/gtest.h>

#include "support/device_files.h"
#include "support/sim_fixture.h"

namespace zv {
namespace {

class RecipientsFileTest : public testing::SimTest {};

TEST_F(RecipientsFileTest, ATextWithANulIsSkippedSoTheSaveKeepsTheRest) {
  // Found by fuzzing: a binary file carried "138\0..." (UTF-16), which was
  // read whole but written back cut at the NUL.
  writeDeviceFile(
      recipients_file::kRecipientsPath,
      testing::readFile(ZV_SOURCE_DIR "/fuzz/corpus/recipients/text_with_nul"));
  auto proc = &world_.launch("com.apple.MobileSMS");
  proc->run([] {
    const Dict lists = recipients_file::read();
    EXPECT_TRUE(lists.empty());
    Dict more = lists;
    more["Team"] = recipients_file::listValue({{"10086", "A", "home"}});
    ASSERT_TRUE(recipients_file::write(more));
    EXPECT_EQ(recipients_file::read(), more);
  });
}

}  // namespace
}  // namespace zv
