#include "area/area_loader.h"

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

TEST_F(AreaLoaderTest, CacheSurvivesAreaChanged) {
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
}

TEST_F(AreaLoaderTest, MissingDatabaseLeavesOverridesOnly) {
  std::filesystem::remove(root_ + "/Library/Zorvel/Area/China");
  writePlist(ZVAreaLoader::kCustomAreaPath, {{"139", Value("Short")}});
  EXPECT_EQ(area("13912345678", true, true), "Short");
  EXPECT_EQ(area("075512345678", true, true), "<nil>");
}

}  // namespace
}  // namespace zv::testing
