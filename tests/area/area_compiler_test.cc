#include "area_test_util.h"

namespace zv::testing {
namespace {

std::string parseError(const std::string& text) {
  try {
    compileText(text);
  } catch (const area::SourceError& e) {
    return e.what();
  }
  return "";
}

TEST(AreaCompilerTest, BadLinesNameFileAndLine) {
  const std::pair<std::string, std::string> cases[] = {
      {"@min\t2\n13a\tX\tY\n",
       "test:2: prefix must be 1 to 8 digits, got \"13a\""},
      {"139\tX\tY\n139\tZ\t\n", "test:2: prefix 139 already defined on line 1"},
      {"139\tX\tY\tshort\n", "test:1: unknown flag \"short\""},
      {"139\tX\tY\tlen=5\n", "test:1: a len= record has no line type"},
      {"# c\n\n139\t\t\n", "test:3: record has neither location nor type"},
      {"@country\t12345\n", "test:1: @country takes at most 4 digits"},
      {"@colour\tred\n", "test:1: unknown header setting @colour"},
      {"139\t" + std::string(95, 'x') + "\tMobile\n",
       "test:1: location and type together exceed 99 bytes"},
      {"@min\t2\n", "test: the source has no records"},
      // A raw NUL would cut the text short in the compiled file: refused
      // like its escaped form.
      {std::string("139\tBei\0jing\tY\n", 15),
       "test:1: texts cannot hold a NUL byte"},
      {"139\tBei\\x00jing\tY\n", "test:1: texts cannot hold a NUL byte"},
  };
  for (const auto& [source, message] : cases)
    EXPECT_EQ(parseError(source), message);
}

TEST(AreaCompilerTest, DumpRebuildsTheSameBytes) {
  std::string bytes = compileText(kSmallSource);
  area::Layout layout;
  area::Source dumped = area::decompile(bytes, "db", &layout);
  EXPECT_EQ(
      area::compile(area::parseSource(area::formatSource(dumped), "dump"), "d"),
      bytes);
  EXPECT_EQ(dumped.header.country, "86");
  EXPECT_EQ(dumped.header.separator, " ");
  EXPECT_EQ(layout.lengthBoundRecords, 2u);
  EXPECT_EQ(layout.longFormKeys, 2u);
  // Line order does not change the output.
  std::string reversed =
      "@separator\t\\x20\n@access\t00\n@country\t86\n@trunk\t0\n@min\t2\n"
      "@max\t12\n110\tPolice\t\tlen=4\n10086\tHotline\t\tlen=5\n"
      "755\tShenzhen\tFixed\tlong\n1391\tJiangsu\tMobile\n"
      "1391234\tNanjing\tMobile\n139\t\tMobile\n10\tBeijing\tFixed\tlong\n";
  EXPECT_EQ(compileText(reversed), bytes);
}

TEST(AreaCompilerTest, DecompileRejectsForeignBytes) {
  std::string good = compileText(kSmallSource), wrongMagic = good;
  wrongMagic[0] = 'Q';
  for (const std::string& bytes :
       {std::string("ZV"), wrongMagic, good.substr(0, good.size() - 1)})
    EXPECT_THROW(area::decompile(bytes, "x"), area::SourceError);
}

}  // namespace
}  // namespace zv::testing
