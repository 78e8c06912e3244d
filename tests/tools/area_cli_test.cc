// `zorvel area` and `zorvel areadb` as a user runs them: answers that say
// when they cannot be given, and output that lands where it is told to.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <regex>

#include "cli_runner.h"

namespace zv::testing {
namespace {

namespace fs = std::filesystem;

const std::string kSample = ZV_BINARY_DIR "/sample-device";
const std::string kChina = kSample + "/Library/Zorvel/Area/China";

class AreaCliTest : public ::testing::Test {
 protected:
  // A device root holding a copy of the sample's area database.
  void SetUp() override {
    ASSERT_TRUE(fs::exists(kChina)) << "the sample device was not built";
    fs::create_directories(root_ + "/Library/Zorvel/Area");
    fs::create_directories(root_ + "/var/mobile/Library");
    fs::copy_file(kChina, db());
  }
  std::string db() const { return root_ + "/Library/Zorvel/Area/China"; }
  std::string area(const std::string& args) {
    return "area --root '" + root_ + "' " + args;
  }

  TempRoot temp_;
  const std::string& root_ = temp_.path();
};

TEST_F(AreaCliTest, JsonGivesFieldsAndAnErrorObjectPerBadLine) {
  auto r = runZorvel(area("--json"), "138\n\xff\n13800138000\nabc\n\n");
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.err,
            "zorvel: line 2: not valid UTF-8\n"
            "zorvel: line 4: not a phone number\n"
            "zorvel: line 5: not a phone number\n"
            "zorvel: 3 numbers not answered\n");
  // A prefix that only tells the carrier has no location; the bad line
  // keeps its place, its number made readable.
  EXPECT_EQ(
      r.out,
      R"({"number":"138","area":"中国移动","location":null,"type":"中国移动"}
{"number":"�","error":"not valid UTF-8"}
{"number":"13800138000","area":"北京市 中国移动","location":"北京市","type":"中国移动"}
{"number":"abc","error":"not a phone number"}
{"number":"","error":"not a phone number"}
)");
}

TEST_F(AreaCliTest, TsvEchoesTheNumberAndPlainKeepsLinesAligned) {
  auto r = runZorvel(area("--tsv 13800138000 010 999"));
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out,
            "13800138000\t北京市 中国移动\t北京市\t中国移动\n"
            "010\t北京市 固话\t北京市\t固话\n"
            "999\t\t\t\n");
  r = runZorvel(area(""), "\xff\xfe\n010\n");
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.out, "\n北京市 固话\n");
  EXPECT_EQ(runZorvel(area("--json --tsv 1")).status, 2);
}

TEST_F(AreaCliTest, MissingOrDamagedDefaultDatabaseIsAnError) {
  // Truncated: the header loads, the tables are cut off.
  fs::resize_file(db(), 4096);
  auto r = runZorvel(area("13800138000"));
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.out, "");
  EXPECT_EQ(r.err, "zorvel: not a valid area database: " + db() + "\n");
  fs::remove(db());
  r = runZorvel(area("13800138000"));
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.err, "zorvel: no area database at " + db() + "\n");
}

TEST_F(AreaCliTest, UnparsableSettingsAreSaidAndNoSocketIsLeft) {
  const std::string prefs = root_ + "/var/mobile/Library/Preferences/";
  fs::create_directories(prefs);
  std::ofstream(prefs + "zorvel.plist") << "<plist><dict>";
  std::ofstream(prefs + "zorvel.area.plist") << "\x01";
  auto r = runZorvel(area("010"));
  EXPECT_EQ(r.status, 0);
  EXPECT_EQ(r.out, "北京市 固话\n");
  EXPECT_EQ(r.err, "zorvel: settings file " + prefs +
                       "zorvel.plist does not parse; using defaults\n"
                       "zorvel: area overrides file " +
                       prefs +
                       "zorvel.area.plist does not parse; using "
                       "defaults\n");
  const std::string folder = root_ + "/var/run/zorvel/notify";
  EXPECT_TRUE(!fs::exists(folder) || fs::is_empty(folder));
}

TEST_F(AreaCliTest, WriteErrorsEndTheCommandWithOneLineOrQuietly) {
  auto r = runShell("'" + zorvelBinary() + "' " + area("010") + " >/dev/full");
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.err, "zorvel: cannot write output: No space left on device\n");
  // A reader that goes away is no one to tell: the command stops there,
  // quietly, whether it was reading numbers or writing a dump.
  std::string numbers;
  for (int i = 0; i < 100000; ++i) numbers += "13800138000\n";
  r = runShell("'" + zorvelBinary() + "' " + area("") + " | head -1", numbers);
  EXPECT_EQ(r.out, "北京市 中国移动\n");
  EXPECT_EQ(r.err, "");
  r = runShell("'" + zorvelBinary() + "' areadb dump '" + kChina +
               "' | head -c 1 >/dev/null");
  EXPECT_EQ(r.err, "");
}

TEST_F(AreaCliTest, OutputOptionReplacesOnlyRegularFiles) {
  // A device is written in place and stays a device.
  auto r = runZorvel("areadb dump '" + db() + "' -o /dev/null");
  EXPECT_EQ(r.status, 0) << r.err;
  struct stat st;
  ASSERT_EQ(::stat("/dev/null", &st), 0);
  EXPECT_TRUE(S_ISCHR(st.st_mode));

  // A symbolic link: its target gets the text, the link stays a link.
  const std::string target = root_ + "/target.txt", link = root_ + "/link";
  std::ofstream(target) << "old";
  fs::permissions(target, fs::perms(0640));
  fs::create_symlink("target.txt", link);
  r = runZorvel("areadb dump '" + db() + "' -o '" + link + "'");
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_TRUE(fs::is_symlink(link));
  EXPECT_GT(fs::file_size(target), 1000u);
  EXPECT_EQ(fs::status(target).permissions() & fs::perms::all, fs::perms(0640));

  // "-" is standard output; a folder is refused and left alone.
  r = runZorvel("areadb dump '" + db() + "' -o -");
  EXPECT_EQ(r.status, 0);
  EXPECT_EQ(r.out.rfind("@version", 0), 0u);
  r = runZorvel("areadb dump '" + db() + "' -o '" + root_ + "'");
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.errLines(), 1u);

  // A build that fails leaves the existing file as it was and no
  // temporary file beside it.
  std::ofstream(root_ + "/bad.txt") << "not a source\n";
  r = runZorvel("areadb build '" + root_ + "/bad.txt' -o '" + target + "'");
  EXPECT_EQ(r.status, 1);
  EXPECT_GT(fs::file_size(target), 1000u);
  size_t files = 0;
  for (auto& e : fs::directory_iterator(root_))
    files += !e.is_symlink() && e.is_regular_file();
  EXPECT_EQ(files, 2u);  // target.txt and bad.txt
}

TEST(ZorvelCliTest, ConventionsOfTheCommandLine) {
  auto r = runZorvel("--version");
  EXPECT_EQ(r.status, 0);
  EXPECT_EQ(r.out, "zorvel 1.0.0 alpha7\n");
  const std::string sample = "--root '" + kSample + "' ";
  // Each usage error is one line naming what is wrong.
  expectFailures(
      [](const std::string& args) {
        auto r = runZorvel(args);
        EXPECT_EQ(r.err.rfind("zorvel: ", 0), 0u) << args;
        return r;
      },
      {{"", 2, "command"},
       {"nosuch", 2, "nosuch"},
       {"area --bogus", 2, "--bogus"},
       {"phone " + sample + "--bogus", 2, "--bogus"},
       {"phone " + sample, 2, "action"},
       {"areadb build", 2, "SOURCE"},
       {"search", 2, "KEY"},
       {"phone " + sample + "--screen 9 call", 2, "9"},
       {"phone " + sample + "jump", 2, "jump"},
       {"phone " + sample + "wait:x", 2, "wait:x"},
       {"contacts " + sample + "--text-size 4 back", 2, "text-size"},
       {"contacts " + sample + "--host messages", 2, "messages"},
       {"contacts " + sample + "jump:3", 2, "jump:3"},
       {"device create /nonexistent/d --seed -1", 2, "seed"},
       // Well-formed actions that do not fit the screen stop the session.
       {"contacts --scratch " + sample + "open:nobody-here", 1,
        "no contact named"},
       {"phone --scratch " + sample + "recents:delete:999", 1, "no such row"},
       {"phone --scratch " + sample + "select:1", 1, "no such row"},
       {"messages --scratch " + sample + "group", 1, "no composer"}});
  // The man page and the completion come from the same definitions.
  r = runZorvel("--docs man");
  EXPECT_EQ(r.status, 0) << r.err;
  r.out = std::regex_replace(r.out, std::regex("\\\\-"), "-");
  for (const char* word :
       {".TH ZORVEL 1", "zorvel phone", "zorvel call", "zorvel areadb build",
        "zorvel device create", "--scratch", "--text-size", "recents:clear"})
    EXPECT_NE(r.out.find(word), std::string::npos) << word;
  r = runZorvel("--docs bash-completion");
  EXPECT_NE(r.out.find("complete -o default -F _zorvel zorvel"),
            std::string::npos);
  EXPECT_NE(r.out.find("\" device create\") words=\"-h --help"),
            std::string::npos)
      << r.out;
}

TEST_F(AreaCliTest, AFolderThatIsNotADeviceIsRefusedUntouched) {
  const std::string notes = root_ + "/notes";
  fs::create_directories(notes);
  std::ofstream(notes + "/todo.txt") << "milk\n";
  const auto before = fileSnapshot(root_);
  expectFailures(
      [](const std::string& args) { return runZorvel(args); },
      {{"phone --root '" + notes + "' type:93 call", 1, "not a device root"},
       {"call --root '" + notes + "' incoming:10086", 1, "not a device root"},
       {"area --root '" + notes + "/todo.txt' 138", 1, "is not a folder"},
       {"settings --root '" + notes + "/absent'", 1, "device root not found"},
       {"device create '" + notes + "' --force", 1, "not a device root"},
       {"init --root '" + notes + "'", 1, "is not empty and not a device"}});
  EXPECT_EQ(fileSnapshot(root_), before);
  EXPECT_FALSE(fs::exists(notes + "/var"));
  EXPECT_FALSE(fs::exists(notes + "/Library"));
}

}  // namespace
}  // namespace zv::testing
