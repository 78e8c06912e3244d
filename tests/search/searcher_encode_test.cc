#include "search/searcher_encode.h"

#include <gtest/gtest.h>

namespace zv {
namespace {

std::unique_ptr<T9Table> chineseTable() {
  auto t = std::make_unique<T9Table>();
  loadT9text(*t, "94264=张\n9426=小\n6464=明\n=空\n");
  return t;
}

TEST(EncodeTest, LatinNameUsesTheKeypadMap) {
  EncodedName e;
  encodeName("Anna Maria Lopez", nullptr, e);
  EXPECT_EQ(e.jianPin, "26626274256739");
  EXPECT_EQ(e.pinYin, "26626274256739");
  EXPECT_EQ(e.english, "265");
  EXPECT_EQ(e.first, std::string(14, '1'));
  EXPECT_EQ(e.nameLength, 14);
}

TEST(EncodeTest, ChineseNameUsesTheTable) {
  auto table = chineseTable();
  const T9Table* t = table.get();
  EncodedName e;
  encodeName("张小明", t, e);
  EXPECT_EQ(e.jianPin, "996464");  // the last character gives its reading
  EXPECT_EQ(e.pinYin, "9426494266464");
  EXPECT_EQ(e.english, "9");
  EXPECT_EQ(e.first, "544");
  EXPECT_EQ(e.nameLength, 3);

  // A word that is only the last character contributes its whole reading.
  encodeName("Li 明", t, e);
  EXPECT_EQ(e.english, "56464");
  EXPECT_EQ(e.jianPin, "546464");
  EXPECT_EQ(e.nameLength, 3);

  // An empty reading adds nothing but still counts as output.
  encodeName("张空", t, e);
  EXPECT_EQ(e.jianPin, "9");
  EXPECT_EQ(e.pinYin, "94264");
  EXPECT_EQ(e.first, "50");
  EXPECT_EQ(e.nameLength, 2);
}

TEST(EncodeTest, CharactersWithoutOutput) {
  EncodedName e;
  encodeName("!?", nullptr, e);
  EXPECT_EQ(e.jianPin, "**");
  EXPECT_EQ(e.pinYin, "**");
  EXPECT_EQ(e.english, "**");
  EXPECT_EQ(e.first, "11");
  EXPECT_EQ(e.nameLength, 0);

  // Without a table a Chinese character is '*' everywhere, even in E after
  // the first word letter; digits and keypad symbols pass through.
  encodeName("a张 +1", nullptr, e);
  EXPECT_EQ(e.jianPin, "2*+1");
  EXPECT_EQ(e.english, "2*+");
  EXPECT_EQ(e.first, "1111");
  EXPECT_EQ(e.nameLength, 4);
  encodeName("a张", nullptr, e);
  EXPECT_EQ(e.nameLength, 1);
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

  // Malformed UTF-8 never reads past the end.
  encodeName("\xe5", nullptr, e);
  EXPECT_EQ(e.jianPin, "*");
  encodeName("\xfe\x80", nullptr, e);
  EXPECT_EQ(e.jianPin, "*");
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
