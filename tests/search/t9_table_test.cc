#include "search/t9_table.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "platform/plist.h"
#include "support/sim_fixture.h"

namespace zv {
namespace {

const std::string kZhang = "\xe5\xbc\xa0";  // 张

TEST(T9TableTest, LetterMapAndCharacterLengths) {
  std::string digits;
  for (char c = 'a'; c <= 'z'; ++c) digits += keypadLetter(c);
  EXPECT_EQ(digits, "22233344455566677778889999");
  EXPECT_EQ(keypadLetter('Q'), '7');
  EXPECT_EQ(keypadLetter('1'), 0);

  // 0x80 is a stray continuation byte.
  const std::pair<unsigned char, int> lengths[] = {
      {'a', 1},  {0x80, 1}, {0xC3, 2}, {0xE5, 3}, {0xF0, 4},
      {0xF8, 5}, {0xFC, 6}, {0xFE, 7}, {0xFF, 1}};
  for (auto [lead, length] : lengths)
    EXPECT_EQ(utf8CharLength(lead), length) << int(lead);
}

// (Buckets of well-formed characters are ChainOrderDecidesBetweenReadings'.)
TEST(T9TableTest, BucketArithmetic) {
  // A malformed long sequence whose hash goes negative is sign-extended
  // before the unsigned modulo.
  std::string bad = "\xfc\x80\x80\x80\x80\x80";
  EXPECT_EQ(t9Hash(bad.data(), bad.size()), -181026879);
  EXPECT_EQ(t9Bucket(bad.data(), bad.size()), 1856u);
}

TEST(T9TableTest, TextLinesEnterEachCharacter) {
  const std::string zhangCut = kZhang.substr(0, 2);
  struct Case {
    std::string text;
    size_t size;
    std::vector<std::pair<std::string, const char*>> lookups;  // null: none
  } cases[] = {
      {"94264=" + kZhang + "\n=abc\n", 4, {{kZhang, "94264"}, {"c", ""}}},
      // Without a final newline the last byte is lost, even inside a
      // character, which is entered cut short.
      {"=abc", 2, {{"b", ""}, {"c", nullptr}}},
      {"1=" + kZhang, 1, {{zhangCut, "1"}, {kZhang, nullptr}}},
      // A carriage return stays as a character of its own; lines without '='
      // are ignored.
      {"no equals\n2=x\r\n", 2, {{"\r", "2"}}},
      // A 3000-byte line is handled as a 2047-byte piece and the rest; only
      // the piece with '=' enters characters, and it loses its last byte.
      {"7=" + std::string(2045, 'q') + std::string(952, 'z') + "\n",
       2044,
       {{"q", "7"}, {"z", nullptr}}},
      // An embedded NUL ends the line.
      {std::string("8=ab\0cd\n", 8), 1, {{"a", "8"}, {"b", nullptr}}},
  };
  for (const Case& c : cases) {
    T9Table t;
    loadT9text(t, c.text);
    EXPECT_EQ(t.size(), c.size) << c.text.substr(0, 20);
    for (const auto& [character, digits] : c.lookups) {
      const std::string* found = t.lookup(character);
      EXPECT_EQ(found ? found->c_str() : "-",
                std::string(digits ? digits : "-"))
          << c.text.substr(0, 20) << " " << character;
    }
  }
}

TEST(T9TableTest, ChainOrderDecidesBetweenReadings) {
  // "a" is listed three times: the first entry is the bucket head; later
  // ones go directly behind it, so the head wins the lookup.
  T9Table t;
  loadT9text(t, "1=a\n2=a\n3=a\n");
  auto chain = t.chain(2705);
  ASSERT_EQ(chain.size(), 3u);
  EXPECT_EQ(chain[0].second, "1");
  EXPECT_EQ(chain[1].second, "3");
  EXPECT_EQ(chain[2].second, "2");
  EXPECT_EQ(*t.lookup("a"), "1");

  // When the bucket already holds another character, the latest line wins:
  // 东 shares bucket 2705 with "a".
  const std::string dong = "\xe4\xb8\x9c";
  ASSERT_EQ(t9Bucket(dong.data(), 3), 2705u);
  T9Table u;
  loadT9text(u, "2=a\n366=" + dong + "\n999=" + dong + "\n");
  EXPECT_EQ(*u.lookup(dong), "999");
}

class T9FileTest : public testing::SimTest {};

TEST_F(T9FileTest, FilesAndOverlay) {
  // A missing file gives an empty table, not none.
  auto missing = loadT9file(root_ + "/nope.txt");
  ASSERT_NE(missing, nullptr);
  EXPECT_EQ(missing->size(), 0u);

  writeDeviceFile("/t.txt", "94264=" + kZhang + "x\n");
  auto table = loadT9file(root_ + "/t.txt");
  ASSERT_EQ(table->size(), 2u);

  // "9" is not a string: skipped.
  const Dict overlay{{"5", "xy"}, {"9", Array{}}, {"6", ""}};
  ASSERT_TRUE(plist::writeFile(root_ + "/o.plist", Value(overlay)));
  loadT9plist(table, root_ + "/o.plist");
  EXPECT_EQ(*table->lookup("x"), "5");  // replaced
  EXPECT_EQ(*table->lookup("y"), "5");  // added
  EXPECT_EQ(*table->lookup(kZhang), "94264");
  EXPECT_EQ(table->size(), 3u);

  // A missing overlay creates an empty table when there is none.
  std::unique_ptr<T9Table> none;
  loadT9plist(none, root_ + "/absent.plist");
  ASSERT_NE(none, nullptr);
  EXPECT_EQ(none->size(), 0u);
  writeDeviceFile("/bad.plist", "not a plist");
  loadT9plist(none, root_ + "/bad.plist");
  EXPECT_EQ(none->size(), 0u);
}

}  // namespace
}  // namespace zv
