// The area compiler (source texts to database files) and the reader of
// the files it writes.
#include <cstring>

#include "area/area_format.h"
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

using namespace areafmt;

class AreaFileTest : public ::testing::Test {
 protected:
  void write(const std::string& bytes) { writeFile(path_, bytes); }
  TempRoot root_;
  const std::string path_ = root_.path() + "/db";
};

TEST_F(AreaFileTest, StripsInternationalPartAndTrunkAndBoundsLengths) {
  write(compileText(std::string(kSmallSource) + "1008\tTelecom\t\n"));
  for (unsigned limit : {10240u, 0u}) {  // cached and read from the file
    AreaHandle a(path_, limit);
    ASSERT_NE(a.h, nullptr);
    EXPECT_EQ(a.get("+8613912345678", 3), "Nanjing Mobile");
    EXPECT_EQ(a.get("008613912345678", 1), "Nanjing");
    EXPECT_EQ(a.get("13912345678", 1), "Nanjing");
    // The deepest prefix without a location falls back to a shorter one.
    EXPECT_EQ(a.get("13919995678", 3), "Jiangsu Mobile");
    EXPECT_EQ(a.get("13999995678", 1), "<null>");
    EXPECT_EQ(a.get("13999995678", 2), "Mobile");  // type only, no separator
    // Long-form-only records need the country code or the trunk prefix.
    EXPECT_EQ(a.get("075512345678", 3), "Shenzhen Fixed");
    EXPECT_EQ(a.get("+8675512345678", 1), "Shenzhen");
    EXPECT_EQ(a.get("75512345678", 1), "<null>");
    EXPECT_EQ(a.get("01012345678", 1), "Beijing");
    EXPECT_EQ(a.get("+861012345678", 1), "Beijing");
    // Country code followed by fewer than 8 digits.
    EXPECT_EQ(a.get("8612", 3), "<null>");
    EXPECT_EQ(a.get("861391234", 3), "<null>");
    EXPECT_EQ(a.get("", 3), "<null>");
    EXPECT_EQ(a.get("1", 3), "<null>");  // below the minimum digits
    // Length-bound records: without flag 4 the record is empty and the
    // shorter prefix answers, as it does for a longer number.
    EXPECT_EQ(a.get("10086", 7), "Hotline");
    EXPECT_EQ(a.get("10086", 3), "Telecom");
    EXPECT_EQ(a.get("100861", 7), "Telecom");
    // Three digits are looked up as four, with the three-digit prefix's key.
    EXPECT_EQ(a.get("110", 5), "Police");
    EXPECT_EQ(a.get("110", 1), "<null>");
    EXPECT_EQ(a.get("1101", 5), "Police");  // also counts as four digits
    EXPECT_EQ(a.get("11012", 5), "<null>");
  }
  EXPECT_EQ(zvarea_get(nullptr, "13912345678", 3), nullptr);
}

TEST_F(AreaFileTest, FileShrunkInPlaceAnswersNothingUntilWholeAgain) {
  const std::string whole = compileText(kSmallSource);
  for (unsigned limit : {10240u, 0u}) {
    write(whole);
    AreaHandle a(path_, limit);
    ASSERT_NE(a.h, nullptr);
    // Rewritten in place by another process: a mapping would fault here.
    for (size_t keep : {whole.size() / 2, size_t{0}, whole.size() - 1}) {
      write(whole.substr(0, keep));
      EXPECT_EQ(a.get("13912345678", 3), "<null>") << keep;
    }
    write(whole);
    EXPECT_EQ(a.get("13912345678", 3), "Nanjing Mobile");
  }
}

TEST_F(AreaFileTest, ThreeDigitNumberUsesThreeDigitKey) {
  write(compileText(
      "@country\t99\n@min\t3\n@max\t12\n555\tThree\t\n5556\tFour\t\n"));
  AreaHandle a(path_);
  EXPECT_EQ(a.get("555", 1), "Three");
  EXPECT_EQ(a.get("5556", 1), "Four");
  EXPECT_EQ(a.get("5557", 1), "Three");
  EXPECT_EQ(a.get("55", 1), "<null>");
  // Lookups show a wrong key at once; what they cannot show is a key cut
  // short by a character that is not a digit.
  EXPECT_EQ(zvarea_atoi("12", 4), 112u);
  EXPECT_EQ(zvarea_atoi("1#345", 5), 11u | (15u << 16));
}

TEST_F(AreaFileTest, RejectsMalformedFiles) {
  const std::string good = compileText(kSmallSource);
  // Whether the file is refused with `bytes` written over the good file at
  // `at` (or cut to `at` bytes when none are given).
  auto rejects = [&](size_t at, std::string bytes = "") {
    write(bytes.empty() ? good.substr(0, at)
                        : std::string(good).replace(at, bytes.size(), bytes));
    ZVAreaFile* h = zvarea_load(path_.c_str(), 10240);
    zvarea_unload(h);
    return h == nullptr;
  };
  EXPECT_FALSE(rejects(good.size()));
  EXPECT_TRUE(rejects(99));
  EXPECT_TRUE(rejects(0, "X"));
  EXPECT_TRUE(rejects(kVersionAt, "\3"));
  for (size_t at : {kMinDigitsAt, kMaxDigitsAt})
    EXPECT_TRUE(rejects(at, std::string(2, '\0'))) << at;
  for (size_t at = kKeyIndexAt; at < kHeaderSize; at += 4)
    EXPECT_TRUE(rejects(at, std::string(4, '\0'))) << at;
  // A key index reaching past the end of the file.
  EXPECT_TRUE(rejects(kKeyIndexAt + 4 + 3, "\x7F"));
  EXPECT_EQ(zvarea_load((root_.path() + "/missing").c_str(), 10), nullptr);
  EXPECT_EQ(zvarea_load(root_.path().c_str(), 10), nullptr);  // a folder
  zvarea_unload(nullptr);
}

// Patches the u32 record of `prefix`'s only record.
void setOnlyRecord(std::string& bytes, uint32_t value) {
  auto p = reinterpret_cast<const uint8_t*>(bytes.data());
  uint32_t at = readU32(p + kRecordTableAt);
  for (int i = 0; i < 4; ++i) bytes[at + i] = char(value >> (8 * i));
}

TEST_F(AreaFileTest, OutOfBoundsLocationKeepsEarlierBufferBytes) {
  std::string bytes =
      compileText("@country\t99\n@min\t2\n@max\t12\n12\tAB\t\n");
  auto p = reinterpret_cast<const uint8_t*>(bytes.data());
  uint32_t stringAt = readU32(p + kStringBlockAt);
  uint32_t size = readU32(p + kStringBlockAt + 4);
  // Make the last text unterminated and point the record at it: the cached
  // read counts its length but copies nothing.
  bytes[stringAt + size - 1] = 'C';
  setOnlyRecord(bytes, size - 3);  // "ABC" without a NUL
  write(bytes);
  AreaHandle cached(path_);
  EXPECT_EQ(std::string(zvarea_get(cached.h, "12", 1), 3),
            std::string(3, '\0'));
  // From the file, the text runs to the end of the file.
  AreaHandle uncached(path_, 0);
  EXPECT_EQ(uncached.get("12", 1), "ABC");
}

TEST_F(AreaFileTest, ResultIsBoundedAt103Characters) {
  std::string location(60, 'L'), type(39, 'T');
  std::string bytes =
      compileText("@country\t99\n@separator\t\n@min\t2\n@max\t12\n12\t" +
                  location + "\t" + type + "\n");
  std::memset(&bytes[kSeparatorAt], '-', 35);
  write(bytes);
  for (unsigned limit : {10240u, 0u}) {
    AreaHandle a(path_, limit);
    std::string r = a.get("12", 3);
    EXPECT_LE(r.size(), 103u);
    EXPECT_EQ(r.substr(0, 95), location + std::string(35, '-'));
  }
}

}  // namespace
}  // namespace zv::testing
