// The searcher's name forms: the T9 reading tables, how names encode with
// them, the cache-file lines that store the forms, and the highlight ranges
// read back from them.
#include <gtest/gtest.h>

#include <random>

#include "platform/plist.h"
#include "search/searcher.h"
#include "search/searcher_cache.h"
#include "search/searcher_encode.h"
#include "search/t9_table.h"
#include "support/sim_fixture.h"

namespace zv {
namespace {

const std::string kZhang = "\xe5\xbc\xa0";  // 张

TEST(T9TableTest, LetterMapCharacterLengthsAndBuckets) {
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

  // (Buckets of well-formed characters are ChainOrderDecidesBetweenReadings'.)
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
  using Chain = std::vector<std::pair<std::string, std::string>>;
  EXPECT_EQ(t.chain(2705), (Chain{{"a", "1"}, {"a", "3"}, {"a", "2"}}));
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

TEST(EncodeTest, FormsOfLatinChineseAndOtherCharacters) {
  T9Table table;
  loadT9text(table, "94264=张\n9426=小\n6464=明\n=空\n");
  // Name, with the table, and its J, P, E, F forms and nameLength.
  const std::tuple<const char*, bool, const char*> cases[] = {
      {"Anna Maria Lopez", false,
       "26626274256739 26626274256739 265 11111111111111 14"},
      // The last character gives its reading to the initials.
      {"张小明", true, "996464 9426494266464 9 544 3"},
      // A word that is only the last character gives its whole reading.
      {"Li 明", true, "546464 546464 56464 114 3"},
      // An empty reading adds nothing but still counts as output.
      {"张空", true, "9 94264 9 50 2"},
      {"!?", false, "** ** ** 11 0"},
      // Without a table a Chinese character is '*' everywhere, even in E
      // after the first word letter; digits and keypad symbols pass through.
      {"a张 +1", false, "2*+1 2*+1 2*+ 1111 4"},
      {"a张", false, "2* 2* 2* 11 1"},
      // Malformed UTF-8 never reads past the end.
      {"\xe5", false, "* * * 1 0"},
      {"\xfe\x80", false, "* * * 1 0"},
  };
  EncodedName e;  // reused from name to name, as the loader does
  for (auto [name, withTable, forms] : cases) {
    encodeName(name, withTable ? &table : nullptr, e);
    EXPECT_EQ(e.jianPin + " " + e.pinYin + " " + e.english + " " + e.first +
                  " " + std::to_string(e.nameLength),
              forms)
        << name;
  }
}

TEST(EncodeTest, FormsStayBoundedAndConsistent) {
  EncodedName e;
  encodeName(std::string(400, 'b'), nullptr, e);
  EXPECT_EQ(e.pinYin.size(), 254u);
  EXPECT_EQ(e.first.size(), 254u);
  EXPECT_EQ(e.nameLength, 254);

  // Long readings: P stops growing below 255 bytes and F keeps one byte
  // per character, never a NUL.
  T9Table t;
  loadT9text(t, std::string(300, '2') + "=x\n" + "12345678=y\n");
  encodeName("yyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyx", &t, e);
  EXPECT_LT(e.pinYin.size(), 255u);
  EXPECT_EQ(e.first.find('\0'), std::string::npos);
  size_t sum = 0;
  for (char c : e.first) sum += static_cast<unsigned char>(c) - '0';
  EXPECT_GE(sum, e.pinYin.size());
}

TEST(ComposeTest, SpaceRuleOrderAndPartsCutTo255Bytes) {
  const std::string f200(200, 'f'), org(100, 'o'), acme = "Acme", none;
  const struct {
    std::string first, last;
    const std::string* org;
    bool lastFirst;
    std::string name;
  } cases[] = {
      {"Al", "B", nullptr, false, "AlB"},
      {"Li", "Na", nullptr, false, "Li Na"},
      {"John", "Smith", nullptr, true, "Smith John"},
      {"明", "张", nullptr, true, "张明"},
      {"小明", "张", nullptr, true, "张小明"},
      {"", "Smith", nullptr, false, "Smith"},
      {"", "", &acme, false, "Acme"},
      {"Li", "Na", &acme, false, "Li Na Acme"},
      {"Li", "", &none, false, "Li"},
      {std::string(300, 'f'), "Last", nullptr, false, std::string(255, 'f')},
      {f200, std::string(100, 'l'), &org, false,
       f200 + " " + std::string(55, 'l')},
      {f200, "", &org, false, f200 + " " + std::string(55, 'o')},
  };
  for (const auto& c : cases)
    EXPECT_EQ(composeDisplayName(c.first, c.last, c.org, c.lastFirst), c.name)
        << c.first.substr(0, 10) << " " << c.last.substr(0, 10);
}

using R = ZVRange;
using S = ZVSearcher;

TEST(HighlightTest, NameRangesByTheFormThatMatched) {
  T9Table t;
  loadT9text(t, "94264=张\n9426=小\n6464=明\n");
  struct Case {
    const char* name;
    int priority;
    const char* key;
    R range;
  } cases[] = {
      {"张小明", ZVPerson::kByInitials, "99", {0, 2}},
      {"张小明", ZVPerson::kByInitials, "996", {0, 3}},
      // A key that is not in the form highlights nothing.
      {"张小明", ZVPerson::kByInitials, "11", {}},
      // "94264" is 张; "4264942" runs from 张 into 小; "66464" holds 明's
      // reading, first found inside 张小 ("...64 9426 6464": offset 3).
      {"张小明", ZVPerson::kByReading, "94264", {0, 1}},
      {"张小明", ZVPerson::kByReading, "4264942", {0, 2}},
      {"张小明", ZVPerson::kByReading, "66464", {1, 2}},
      {"Li Na", ZVPerson::kByInitials, "62", {3, 2}},
      // A space right after the range is taken into it.
      {"Li Na", ZVPerson::kByInitials, "54", {0, 3}},
      {"Ann Dee Go", ZVPerson::kByWords, "34", {3, 7}},
      {"Ann Dee Go", ZVPerson::kByWords, "2", {0, 3}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.name) + " " + c.key);
    ZVPerson p;  // laid out as the loader does
    EncodedName e;
    encodeName(c.name, &t, e);
    p.setTexts({}, e.jianPin, e.english, e.pinYin, e.first, c.name, false);
    p.setNameLength(e.nameLength);
    p.setPriority(c.priority);
    EXPECT_EQ(S::getHighlightNameRange(c.name, c.key, &p), c.range);
  }
  // No person, nothing.
  EXPECT_EQ(S::getHighlightNameRange("张小明", "99", nullptr), (R{}));

  EXPECT_EQ(S::getShiftSpaceEnglishNameRange({1, 2}, "Ann Dee Go"), (R{3, 7}));
  EXPECT_EQ(S::getShiftSpaceEnglishNameRange({0, 1}, "Ann Dee Go"), (R{0, 3}));
  // Ranges count UTF-16 units: an emoji before the space takes two.
  EXPECT_EQ(S::getShiftSpaceNameRange({1, 1}, "\xf0\x9f\x98\x80 b"), (R{1, 2}));
  EXPECT_EQ(S::getShiftSpaceNameRange({2, 1}, "\xf0\x9f\x98\x80 b"), (R{3, 1}));
}

TEST(HighlightTest, NumberRanges) {
  const struct {
    const char *number, *key;
    R range;
  } cases[] = {
      {"138-0013-8000", "138", {0, 3}},
      // Separators between matched digits are taken in.
      {"138-0013-8000", "800", {2, 4}},
      {"138-0013-8000", "3800", {1, 5}},
      // A key as long as the number, or covering all of it, shows nothing.
      {"10086", "10086", {}},
      {"100-86", "10086", {}},
      {"100-86", "", {}},
      {"123", "9", {}},
      // Running out of digits ends the search at once.
      {"1-2-3", "34", {}},
      {"+86 10", "86", {1, 2}},
  };
  for (const auto& c : cases)
    EXPECT_EQ(S::getHighlightNumberRange(c.number, c.key), c.range)
        << c.number << " " << c.key;
}

// A line read back formats to the same bytes (empty forms keep their
// fields); a field never set is written "(null)", and a number read as
// "(null)" filters to "".
TEST(CacheFileTest, LinesRoundTrip) {
  const std::string full =
      "12\t-1\t3\t996464\t9426494266464\t9\t544\t555\t张小明\n";
  const std::string empty = "7\t0\t0\t\t\t\t\t\t\n";
  ZVSearcher::PersonList out;
  readPersonsCache(full + empty + "8\t0\t0\tj\tp\te\tf\t(null)\tn\n", out);
  ASSERT_EQ(out.size(), 3u);
  EXPECT_EQ(formatCacheLine(*out[0]), full);
  EXPECT_EQ(formatCacheLine(*out[1]), empty);
  EXPECT_EQ(out[2]->getPhoneNumber(), "");
  EXPECT_EQ(formatCacheLine(ZVPerson()),
            "-1\t-1\t0\t(null)\t(null)\t(null)\t(null)\t(null)\t(null)\n");
}

// The persons read from `text`, written back as lines.
std::string readBack(std::string_view text) {
  ZVSearcher::PersonList out;
  readPersonsCache(text, out);
  std::string lines;
  for (const auto& p : out) lines += formatCacheLine(*p);
  return lines;
}

TEST(CacheFileTest, MalformedLines) {
  constexpr char kNul[] =
      "1\t1\t1\tj\0\tp\te\tf\t1\tx\n"
      "2\t1\t1\tj\tp\te\tf\t1\ty\n";
  const std::string head = "1\t1\t1\tj\tp\te\tf\t1\t";
  const std::pair<std::string, std::string> cases[] = {
      // Eight fields, blank lines, a lone tab run: skipped.
      {"1\t2\t3\t4\t5\t6\t7\t8\n\n\t\t\n", ""},
      // Extra fields are ignored; numbers read as their leading integer,
      // clamped; the number is filtered again; the last line needs no
      // newline.
      {"x\t99999999999\t-4z\tj\tp\te\tf\t1-2\tname\textra\tmore",
       "0\t2147483647\t-4\tj\tp\te\tf\t12\tname\n"},
      // A NUL ends a line; a line longer than 2047 bytes is read in pieces.
      {std::string("1\t1\t1\tj\tp\te\tf\t1\tn\0ame\n", 23), head + "n\n"},
      {head + std::string(3000, 'n') + "\n",
       head + std::string(2047 - 16, 'n') + "\n"},
      // What follows a NUL is skipped up to the newline, even a tab, and
      // the next line is read as usual.
      {std::string(kNul, sizeof kNul - 1), "2\t1\t1\tj\tp\te\tf\t1\ty\n"},
  };
  for (const auto& [text, lines] : cases)
    EXPECT_EQ(readBack(text), lines) << text.substr(0, 40);
}

// Lines with fields of every length from 0 to 19 bytes, so that tabs fall at
// every position of a machine word, read back field for field.
TEST(CacheFileTest, FieldsOfEveryLengthSplitExactly) {
  std::mt19937 rng(5);
  std::string text;
  for (int n = 0; n < 400; ++n) {
    text += std::to_string(n) + "\t1\t2";
    for (int f = 3; f < 9; ++f)
      text += "\t" + std::string(rng() % 20, f == 7 ? '5' : 'a' + f);
    text += "\n";
  }
  // No final newline.
  EXPECT_EQ(readBack(text.substr(0, text.size() - 1)), text);
}

}  // namespace
}  // namespace zv
