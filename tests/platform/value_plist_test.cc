#include <gtest/gtest.h>
#include <plist/plist.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>

#include "platform/plist.h"
#include "platform/value.h"
#include "support/device_files.h"
#include "support/sim_fixture.h"

namespace zv {
namespace {

TEST(ValueConversions, StringsNumbersAndMissingValuesReadLikeThePlatforms) {
  for (const char* yes : {"1", "YES", "true", "  +0007"})
    EXPECT_TRUE(Value(yes).boolValue()) << yes;
  for (const char* no : {"NO", "0", ""})
    EXPECT_FALSE(Value(no).boolValue()) << no;
  EXPECT_FLOAT_EQ(Value("0.8").floatValue(), 0.8f);
  EXPECT_FLOAT_EQ(Value("8.1.2").floatValue(), 8.1f);
  // Decimal text only, as the platform reads it: not strtod's hexadecimal,
  // infinities or NaN.
  EXPECT_EQ(Value(" -.5e1x").doubleValue(), -5);
  for (const char* notDecimal : {"0x10", "inf", "-nan", "e5", ".", "+-1"})
    EXPECT_EQ(Value(notDecimal).doubleValue(), 0) << notDecimal;
  EXPECT_EQ(Value("-1e999").doubleValue(), -HUGE_VAL);
  const std::pair<const char*, int> ints[] = {{" 42abc", 42},
                                              {"99999999999", INT32_MAX},
                                              {"-99999999999", INT32_MIN},
                                              {"x", 0}};
  for (const auto& [text, n] : ints) EXPECT_EQ(Value(text).intValue(), n);
  EXPECT_EQ(Value(2.7).intValue(), 2);
  EXPECT_EQ(Value(-2.7).intValue(), -2);
  EXPECT_TRUE(Value(0.1).boolValue());
  EXPECT_EQ(Value(true).intValue(), 1);
  // Integers too wide for 32 bits keep their low bits, like a C cast.
  EXPECT_EQ(Value(int64_t{0x100000005}).intValue(), 5);
  EXPECT_EQ(Value(1e300).longLongValue(), INT64_MAX);
  EXPECT_EQ(Value(std::nan("")).longLongValue(), 0);
  EXPECT_EQ(Value(0.1).stringValue(), "0.1");
  EXPECT_EQ(Value(int64_t{-12}).stringValue(), "-12");
  const Value missing;
  EXPECT_FALSE(missing.boolValue());
  EXPECT_EQ(missing.intValue(), 0);
  EXPECT_EQ(missing.stringValue(), "");
  EXPECT_TRUE(missing["key"].isNull());
  EXPECT_TRUE(Value(Dict{{"a", Value(1)}})["b"].isNull());
  EXPECT_TRUE(Value("a")["a"].isNull());
}

TEST(Plist, XmlAndBinaryListsKeepEveryKind) {
  const Value v(Dict{
      {"bool", Value(true)},
      {"int", Value(int64_t{1234567890123})},
      {"negative", Value(-5)},
      {"real", Value(0.5)},
      {"string", Value("北京 & <移动>")},
      {"empty", Value("")},
      {"data", Value(Data{std::string("\0\x01\xff", 3)})},
      {"date", Value(Date{438000000})},  // XML keeps whole seconds
      {"array", Value(Array{Value(1), Value("two"), Value(Array{})})},
      {"dict", Value(Dict{{"nested", Value(false)}})},
  });
  const std::string xml = plist::toXml(v);
  EXPECT_EQ(plist::parse(xml), v);
  // Negative integers are written as such, not as huge unsigned numbers.
  EXPECT_NE(xml.find("<integer>-5</integer>"), std::string::npos);

  // The same list in the binary form, as libplist writes it.
  plist_t node = nullptr;
  plist_from_xml(xml.data(), static_cast<uint32_t>(xml.size()), &node);
  ASSERT_NE(node, nullptr);
  char* bin = nullptr;
  uint32_t len = 0;
  plist_to_bin(node, &bin, &len);
  plist_free(node);
  ASSERT_NE(bin, nullptr);
  const std::string bytes(bin, len);
  free(bin);
  ASSERT_EQ(bytes.rfind("bplist00", 0), 0u);
  EXPECT_EQ(plist::parse(bytes), v);
}

TEST(Plist, WritesAtomicallyIntoNewFoldersAndReadsOnlyWholeLists) {
  testing::TempRoot temp;
  const std::string path = temp.path() + "/a/b/list.plist";
  ASSERT_TRUE(plist::writeFile(path, Value(Dict{{"k", Value(1)}})));
  ASSERT_TRUE(plist::writeFile(path, Value(Dict{{"k", Value(2)}})));
  EXPECT_EQ(plist::readDictionary(path), (Dict{{"k", Value(2)}}));
  // No temporary file is left next to it, and others may read it.
  std::vector<std::string> files;
  for (const auto& e :
       std::filesystem::directory_iterator(temp.path() + "/a/b"))
    files.push_back(e.path().filename());
  EXPECT_EQ(files, std::vector<std::string>{"list.plist"});
  auto perms = std::filesystem::status(path).permissions();
  EXPECT_NE(perms & std::filesystem::perms::others_read,
            std::filesystem::perms::none);

  // Malformed, missing or wrong lists give nothing.
  for (const char* bad : {"", "not a plist", "bplist00garbage",
                          "<?xml version=\"1.0\"?><plist><dict><key>a"})
    EXPECT_FALSE(plist::parse(bad)) << bad;
  const std::string array = temp.path() + "/array.plist";
  EXPECT_FALSE(plist::readDictionary(temp.path() + "/missing.plist"));
  ASSERT_TRUE(plist::writeFile(array, Value(Array{Value(1)})));
  EXPECT_FALSE(plist::readDictionary(array));
  EXPECT_TRUE(plist::readFile(array));
  // A text or key with a NUL byte cannot be written whole, nor an object
  // read as no value (a binary list's UID: written, it would turn into an
  // empty dictionary): no write at all, the file before stays.
  for (const Value& unwritable :
       {Value(Array{Value(std::string("a\0b", 3))}),
        Value(Dict{{"k", Value(Dict{{std::string("a\0", 2), Value(1)}})}}),
        Value(Array{Value(1), Value()})})
    EXPECT_FALSE(plist::writeFile(array, unwritable));
  EXPECT_EQ(plist::readFile(array), Value(Array{Value(1)}));
  // A folder in the way makes the write fail cleanly.
  std::filesystem::create_directories(temp.path() + "/dir.plist");
  EXPECT_FALSE(plist::writeFile(temp.path() + "/dir.plist", Value(Dict{})));
  EXPECT_FALSE(plist::writeFile(array + "/x", Value(Dict{})));
}

std::string settingsCorpus(const char* name) {
  return testing::readFile(
      std::string(ZV_SOURCE_DIR "/fuzz/corpus/settings_plist/") + name);
}

TEST(Plist, StringsHoldingANulByteAreReadWhole) {
  // Found by fuzzing the settings file: libplist asserts on such a string
  // when asked for it as a C string, which ended the process.
  auto value = plist::parse(settingsCorpus("string_with_nul"));
  ASSERT_TRUE(value.has_value());
  EXPECT_TRUE(std::any_of(
      value->dict()->begin(), value->dict()->end(), [](const auto& kv) {
        return kv.second.isString() &&
               kv.second.string()->find('\0') != std::string::npos;
      }));
}

TEST(Plist, KeysHoldingANulAreReadWholeBesideTheOthers) {
  // Found by fuzzing the settings file: libplist keeps a UTF-16 key with a
  // NUL at full length, then asserts when reading it as a C string.
  const std::string bytes = settingsCorpus("key_with_nul");
  ASSERT_GT(bytes.size(), 40u);
  const std::string utf16("\x66\0E\0n\0a\0b\0\0\0e", 13);
  const std::string ascii = "\x56" + std::string("Enab\0e", 6);
  const size_t at = bytes.find(utf16);
  ASSERT_NE(at, std::string::npos);
  std::string shorter = bytes;
  shorter.replace(at, utf16.size(), ascii + std::string(6, '\x09'));
  std::string clean = bytes;
  clean[at + 10] = 'l';
  auto whole = plist::parse(clean);
  ASSERT_TRUE(whole);
  EXPECT_TRUE((*whole)["Enable"].boolValue());
  // In UTF-16 and in ASCII, the key keeps its NUL and every other key is
  // there as without it.
  Dict expected = *whole->dict();
  expected[std::string("Enab\0e", 6)] = expected["Enable"];
  expected.erase("Enable");
  for (const std::string& list : {bytes, shorter})
    EXPECT_EQ(plist::parse(list), Value(expected));
}

}  // namespace
}  // namespace zv
