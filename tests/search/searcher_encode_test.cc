#include "search/searcher_encode.h"

#include <gtest/gtest.h>

namespace zv {
namespace {

TEST(EncodeTest, FormsOfLatinChineseAndOtherCharacters) {
  T9Table table;
  loadT9text(table, "94264=张\n9426=小\n6464=明\n=空\n");
  struct Case {
    const char* name;
    bool withTable;
    const char *j, *p, *e, *f;  // null: not checked
    int length;                 // -1: not checked
  } cases[] = {
      {"Anna Maria Lopez", false, "26626274256739", "26626274256739", "265",
       "11111111111111", 14},
      // The last character gives its reading to the initials.
      {"张小明", true, "996464", "9426494266464", "9", "544", 3},
      // A word that is only the last character gives its whole reading.
      {"Li 明", true, "546464", nullptr, "56464", nullptr, 3},
      // An empty reading adds nothing but still counts as output.
      {"张空", true, "9", "94264", nullptr, "50", 2},
      {"!?", false, "**", "**", "**", "11", 0},
      // Without a table a Chinese character is '*' everywhere, even in E
      // after the first word letter; digits and keypad symbols pass through.
      {"a张 +1", false, "2*+1", nullptr, "2*+", "1111", 4},
      {"a张", false, nullptr, nullptr, nullptr, nullptr, 1},
      // Malformed UTF-8 never reads past the end.
      {"\xe5", false, "*", nullptr, nullptr, nullptr, -1},
      {"\xfe\x80", false, "*", nullptr, nullptr, nullptr, -1},
  };
  EncodedName e;  // reused from name to name, as the loader does
  auto expect = [](const std::string& got, const char* want) {
    if (want) {
      EXPECT_EQ(got, want);
    }
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    encodeName(c.name, c.withTable ? &table : nullptr, e);
    expect(e.jianPin, c.j);
    expect(e.pinYin, c.p);
    expect(e.english, c.e);
    expect(e.first, c.f);
    if (c.length >= 0) {
      EXPECT_EQ(e.nameLength, c.length);
    }
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

TEST(ComposeTest, SpaceRuleAndOrder) {
  EXPECT_EQ(composeDisplayName("Al", "B", nullptr, false), "AlB");
  EXPECT_EQ(composeDisplayName("Li", "Na", nullptr, false), "Li Na");
  EXPECT_EQ(composeDisplayName("John", "Smith", nullptr, true), "Smith John");
  EXPECT_EQ(composeDisplayName("明", "张", nullptr, true), "张明");
  EXPECT_EQ(composeDisplayName("小明", "张", nullptr, true), "张小明");
  EXPECT_EQ(composeDisplayName("", "Smith", nullptr, false), "Smith");

  std::string org = "Acme";
  EXPECT_EQ(composeDisplayName("", "", &org, false), "Acme");
  EXPECT_EQ(composeDisplayName("Li", "Na", &org, false), "Li Na Acme");
  std::string empty;
  EXPECT_EQ(composeDisplayName("Li", "", &empty, false), "Li");
}

TEST(ComposeTest, PartsAreCutTo255Bytes) {
  std::string longFirst(300, 'f');
  std::string name = composeDisplayName(longFirst, "Last", nullptr, false);
  EXPECT_EQ(name, std::string(255, 'f'));
  std::string org(100, 'o');
  name = composeDisplayName(std::string(200, 'f'), std::string(100, 'l'), &org,
                            false);
  EXPECT_EQ(name, std::string(200, 'f') + " " + std::string(55, 'l'));
  name = composeDisplayName(std::string(200, 'f'), "", &org, false);
  EXPECT_EQ(name, std::string(200, 'f') + " " + std::string(55, 'o'));
}

}  // namespace
}  // namespace zv
