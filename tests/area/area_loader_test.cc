// The area service of a process (ZVAreaLoader) on a small database, and on
// databases made by the generator tools/gen/area_source.py and checked by
// tools/gen/check_area.py against the python3-phonenumbers data of the
// system, which scripts/setup installs (a machine without it fails).
#include "area/area_loader.h"

#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>

#include "area_test_util.h"
#include "core/settings.h"
#include "platform/platform.h"
#include "support/phone_process.h"

namespace zv::testing {
namespace {

// A Phone process whose China database is the small one.
class AreaLoaderTest : public PhoneProcessTest {
 protected:
  AreaLoaderTest() : proc_(world_.launch("com.apple.mobilephone")) {
    installDatabase(kSmallSource);
  }
  void installDatabase(const std::string& source) {
    writeFile(root_ + "/Library/Zorvel/Area/China", compileText(source));
  }
  std::string area(std::string_view number, bool name, bool type,
                   bool alone = false) {
    return serviceArea(proc_, number, name, type, alone);
  }
  platform::SimProcess& proc_;
};

TEST_F(AreaLoaderTest, NormalisesAndStripsThePrefixNumber) {
  writePlist(ZVSettings::kPath, {{"PrefixNumber", Value("17951")}});
  EXPECT_FALSE(
      proc_.run([] { return ZVAreaLoader::sharedInstance()->loaded(); }));
  EXPECT_EQ(area("1795113912345678", true, true), "Nanjing Mobile");
  EXPECT_EQ(area("+86 139-1234-5678", true, false), "Nanjing");
  EXPECT_EQ(area("(0755) 1234 5678", false, true), "Fixed");
  EXPECT_EQ(area("13912345678", false, false), "<nil>");
  EXPECT_EQ(area("", true, true), "<nil>");
  EXPECT_EQ(area("abc", true, true), "<nil>");
  EXPECT_EQ(area("10086", true, false, true), "Hotline");
  EXPECT_EQ(area("10086", true, false, false), "<nil>");
  // The three-argument form takes withAlone from AreaAlone (default on).
  EXPECT_EQ(proc_.run([] {
    return *ZVAreaLoader::sharedInstance()->getArea("10086", true, false);
  }),
            "Hotline");
}

TEST_F(AreaLoaderTest, OverridesAnswerBeforeTheDatabase) {
  writePlist(ZVAreaLoader::kCustomAreaPath, {{"1391234", Value("Home")},
                                             {"139", Value("Short")},
                                             {"13800000000", Value("")},
                                             {"*5555", Value("Fives")}});
  EXPECT_EQ(area("13912345678", true, true), "Home");
  EXPECT_EQ(area("13999999999", true, false), "Short");
  EXPECT_EQ(area("13800000000", true, true), "<nil>");
  EXPECT_EQ(area("075555555555", true, false), "Fives");
  EXPECT_EQ(area("075512345678", true, false), "Shenzhen");
}

TEST_F(AreaLoaderTest, CacheSurvivesAreaChangedAndOverridesOutliveTheDatabase) {
  EXPECT_EQ(area("13912345678", true, false), "Nanjing");
  installDatabase("@country\t86\n@trunk\t0\n@min\t2\n1391234\tSuzhou\t\n");
  proc_.run([] { platform::current().post("ZVAreaChanged"); });
  world_.advance(0);
  EXPECT_FALSE(
      proc_.run([] { return ZVAreaLoader::sharedInstance()->loaded(); }));
  // Same number and flags: the remembered answer, without reloading.
  EXPECT_EQ(area("13912345678", true, false), "Nanjing");
  // Other flags go to the reopened database.
  EXPECT_EQ(area("13912345678", true, true), "Suzhou");
  EXPECT_EQ(area("13912345678", true, false), "Suzhou");
  // With the database gone, only the overrides answer.
  std::filesystem::remove(root_ + "/Library/Zorvel/Area/China");
  writePlist(ZVAreaLoader::kCustomAreaPath, {{"139", Value("Short")}});
  proc_.run([] { platform::current().post("ZVAreaChanged"); });
  world_.advance(0);
  EXPECT_EQ(area("13900000000", true, true), "Short");
  EXPECT_EQ(area("075512345678", true, true), "<nil>");
}

namespace fs = std::filesystem;

// Runs a shell command; its exit status, or -1 when it did not exit.
int run(const std::string& command) {
  int status = std::system(command.c_str());
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}
bool havePhonenumbers() {
  return run("/usr/bin/python3 -c 'import phonenumbers' 2>/dev/null") == 0;
}

class UsaDatabaseTest : public SimTest {
 protected:
  void SetUp() override {
    ASSERT_TRUE(havePhonenumbers())
        << "scripts/setup installs python3-phonenumbers";
  }
  std::string area(std::string_view number) {
    return serviceArea(proc_, number, true, false);
  }
  platform::SimProcess& proc_ = world_.launch("com.apple.mobilephone");
};

// The NANP has far more place names than 64 KiB of texts hold; the
// generator widens the rarer ones to their state, and the database then
// works like any other.
TEST_F(UsaDatabaseTest, GeneratedSourceFitsAndAnswersThroughTheService) {
  std::string source = root_ + "/USA.txt";
  ASSERT_EQ(run("/usr/bin/python3 " ZV_SOURCE_DIR
                "/tools/gen/area_source.py --country 1 --lang en -o '" +
                source + "'"),
            0);
  std::string text = readFile(source);
  EXPECT_NE(text.find("locations were widened to their region"),
            std::string::npos);
  std::string bytes;
  ASSERT_NO_THROW(bytes = compileText(text));
  writeFile(root_ + "/Library/Zorvel/Area/USA", bytes);
  proc_.run([] {
    platform::writeDictionary(ZVSettings::kPath,
                              {{"AreaDatabase", Value("USA")}});
  });

  // A city, or the state when the city's name was widened.
  auto inState = [](const std::string& got, const std::string& code,
                    const std::string& state) {
    return got == state || (got.size() > code.size() + 2 &&
                            got.compare(got.size() - code.size() - 2,
                                        std::string::npos, ", " + code) == 0);
  };
  for (const char* number :
       {"+1 650 253 0000", "16502530000", "(650) 253-0000", "650.253.0000",
        "+1-415-555-0100", "011 1 213 555 0100"}) {
    EXPECT_PRED3(inState, area(number), "CA", "California") << number;
  }
  EXPECT_PRED3(inState, area("+1 201 224 1234"), "NJ", "New Jersey");
  EXPECT_PRED3(inState, area("(212) 555-1234"), "NY", "New York");
  EXPECT_PRED3(inState, area("+1 512 555 0199"), "TX", "Texas");
  // Too short after the country code, and no such area code.
  EXPECT_EQ(area("+1 650 253"), "<nil>");
  EXPECT_EQ(area("+1 999 555 0100"), "<nil>");
}

// Every prefix of up to three digits and a sample of the longer ones, in
// every written form, against the China database of the sample device.
TEST(ChinaDatabaseCheck, AgreesWithThePublicData) {
  ASSERT_TRUE(havePhonenumbers())
      << "scripts/setup installs python3-phonenumbers";
  const std::string zorvel = ZV_BINARY_DIR "/zorvel";
  const std::string db =
      ZV_BINARY_DIR "/sample-device/Library/Zorvel/Area/China";
  ASSERT_TRUE(fs::exists(zorvel) && fs::exists(db))
      << "the suite depends on the zorvel and sample_device targets";
  EXPECT_EQ(run("/usr/bin/python3 " ZV_SOURCE_DIR
                "/tools/gen/check_area.py --samples 3000 --zorvel '" +
                zorvel + "' --db '" + db + "'"),
            0);
}

}  // namespace
}  // namespace zv::testing
