// The Messages part of the generated device image: conversations in both
// languages with unread ones, groups of people that have numbers, and the
// two check-mark pictures.
#include <gtest/gtest.h>

#include "devicegen/device_image.h"
#include "platform/db/messages_schema.h"
#include "platform/db/platform_schema.h"
#include "platform/ui/image.h"
#include "support/device_db.h"
#include "support/sim_fixture.h"

namespace zv::testing {
namespace {

TEST(DeviceImageMessagesTest, ConversationsGroupsAndCheckMarks) {
  TempRoot root;
  DeviceImageOptions options;
  options.contacts = 80;
  options.calls = 0;
  createDeviceImage(root.path(), options);
  const std::string sms = root.path() + messages_schema::kMessagesDbPath;

  auto chats = columnValues<int64_t>(sms, "SELECT ROWID FROM chat");
  EXPECT_GE(chats.size(), 8u);
  // Every chat has one handle and at least one message.
  EXPECT_EQ(columnValues<int64_t>(
                sms,
                "SELECT COUNT(*) FROM chat WHERE ROWID NOT IN "
                "(SELECT chat_id FROM chat_message_join) OR ROWID NOT IN "
                "(SELECT chat_id FROM chat_handle_join)")[0],
            0);
  // Chinese and Western texts, sent and received, some unread.
  for (const char* where : {"text LIKE '%吃饭%'", "text LIKE '%Friday%'",
                            "is_from_me=1", "is_read=0 AND is_from_me=0"})
    EXPECT_GT(
        columnValues<int64_t>(
            sms, std::string("SELECT COUNT(*) FROM message WHERE ") + where)[0],
        0)
        << where;

  const std::string book = root.path() + platform_schema::kAddressBookPath;
  auto sizes = columnValues<int64_t>(
      book,
      "SELECT COUNT(m.member_id) FROM ABGroup g LEFT JOIN ABGroupMembers m ON "
      "m.group_id=g.ROWID GROUP BY g.ROWID ORDER BY g.ROWID");
  ASSERT_EQ(sizes.size(), 4u);
  EXPECT_GT(sizes[0], 0);
  EXPECT_EQ(sizes[3], 0);
  // Members are people with phone numbers.
  EXPECT_EQ(columnValues<int64_t>(
                book,
                "SELECT COUNT(*) FROM ABGroupMembers WHERE member_id NOT "
                "IN (SELECT record_id FROM ABMultiValue WHERE "
                "property=3)")[0],
            0);

  auto checked =
      ui::Image::fromFile(root.path() + "/Library/Zorvel/checked.png", 2);
  auto unchecked =
      ui::Image::fromFile(root.path() + "/Library/Zorvel/notchecked.png", 2);
  ASSERT_NE(checked, nullptr);
  ASSERT_NE(unchecked, nullptr);
  EXPECT_EQ(checked->pixelWidth(), kCheckMarkSize);
  EXPECT_EQ(checked->pixel(8, 22), (ui::Pixel{0, 122, 255, 255}));  // disc
  EXPECT_EQ(checked->pixel(0, 0).a, 0);                             // corner
  EXPECT_EQ(unchecked->pixel(22, 22).a, 0);  // an empty ring
  EXPECT_EQ(unchecked->pixel(2, 22).a, 255);
}

}  // namespace
}  // namespace zv::testing
