// zorvel callerd as a real process on a private D-Bus (callerd_fixture.h):
// the test plays the network (calls come, ring, end) and reads what
// callerd asked of ModemManager and of the desktop.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdlib>

#include "callerd_fixture.h"
#include "platform/db/platform_schema.h"
#include "platform/db/sqlite_db.h"
#include "platform/linux/notify_bus.h"
#include "support/device_db.h"
#include "support/device_people.h"

namespace zv {
namespace {

using testing::kModem;
using testing::waitUntil;

// A stranger in 宿迁 (Jiangsu), a contact in 三明 (Fujian).
constexpr char kStranger[] = "13407551234";
constexpr char kContact[] = "13507551234";
constexpr char kBlacklisted[] = "13800138000";

struct Note {
  std::string summary, body;
  int urgency = -1;
  bool resident = false;
};

// The user's contacts are callerd_phone_test.cc's: no address-book server
// is started here (it would keep its books in the real HOME).
class CallerdTest : public testing::CallerdFixture {
 protected:
  void SetUp() override {
    testing::writeFile(root_ + "/Library/Zorvel/Area/China",
                       testing::chinaDatabase());
    testing::writeFile(root_ + "/Library/Zorvel/block.caf", "caff");
    testing::writePlist(prefs("zorvel.black.plist"),
                        Dict{{kBlacklisted, Value(true)}});
    auto lei = testing::deviceContact(2, "Lei", "Li", kContact);
    lei.organization = "Acme Trading";
    testing::writeDevicePeople(root_, {lei});
    CallerdFixture::SetUp();
  }
  void TearDown() override {
    unlock();
    CallerdFixture::TearDown();
  }

  // Holds an exclusive transaction on the database at `path`, as another
  // program would, until unlock().
  void lockExclusively(const std::string& path) {
    locks_.push_back(
        std::make_unique<sql::Database>(path, sql::Database::Mode::kReadWrite));
    ASSERT_TRUE(locks_.back()->exec("BEGIN EXCLUSIVE")) << path;
  }
  void unlock() { locks_.clear(); }

  // The wall-clock times of all calls' Hangup requests, from the mock's log.
  std::vector<double> hangupTimes() {
    std::istringstream log(testing::readFile(root_ + ".mm.log"));
    std::vector<double> times;
    for (std::string line; std::getline(log, line);)
      if (line.ends_with(" Hangup")) times.push_back(std::stod(line));
    return times;
  }

  // The desktop's notifications: Notify(app, replaces, icon, summary, body,
  // actions, hints, timeout).
  std::vector<Note> notes() {
    std::vector<Note> out;
    for (const auto& a : modem_.methodCalls("/org/freedesktop/Notifications",
                                            "Notify", testing::kNotes)) {
      Note& n =
          out.emplace_back(Note{g_variant_get_string(a[3].get(), nullptr),
                                g_variant_get_string(a[4].get(), nullptr)});
      guchar urgency = 0;
      gboolean resident = FALSE;
      if (g_variant_lookup(a[6].get(), "urgency", "y", &urgency))
        n.urgency = urgency;
      if (g_variant_lookup(a[6].get(), "resident", "b", &resident))
        n.resident = resident;
    }
    return out;
  }

  long rssKiB() {
    std::ifstream status("/proc/" + std::to_string(callerd_) + "/status");
    for (std::string line; std::getline(status, line);)
      if (line.rfind("VmRSS:", 0) == 0) return std::stol(line.substr(6));
    return -1;
  }

  std::vector<std::unique_ptr<sql::Database>> locks_;
};

const Dict kBlocking{{"EnableBlacklist", true},
                     {"BlacklistBlockMode", 3},
                     {"BlacklistBlockArea", "宿迁"},
                     {"BlacklistBlockingRemind", 3}};
Dict blockingWith(const Dict& changes) {
  Dict settings = kBlocking;
  for (const auto& [key, value] : changes) settings[key] = value;
  return settings;
}

TEST_F(CallerdTest, HangingUpAllAsksTheModem) {
  start(blockingWith({{"BlacklistBlockAction", 2}}));
  const auto stranger = modem_.ring(kStranger);
  EXPECT_TRUE(waitUntil(
      [&] { return modem_.calledTimes(kModem, "HangupAll") == 1; }, 1.0))
      << output();
  EXPECT_EQ(modem_.hangups(stranger), 0u);
}

// A contact's call on the desktop: the area in the information view, the
// organisation once; unanswered, a missed-call notification that stays,
// and the ring seconds on the device.
TEST_F(CallerdTest, ContactsCallIsShownAndUnansweredLeavesItsRingSeconds) {
  start(blockingWith({{"AreaStyleIncomingCall", 1},
                      {"EnableInfo", true},
                      {"InfoIncomingCallOrganization", true},
                      {"CallHistoryRingDuration", true}}));
  const auto contact = modem_.ring(kContact);
  ASSERT_TRUE(waitUntil([&] { return notes().size() == 1; }, 2.0)) << output();
  std::this_thread::sleep_for(std::chrono::milliseconds(3400));
  auto shown = notes();
  ASSERT_EQ(shown.size(), 1u);
  EXPECT_EQ(shown[0].summary, "Lei Li");
  EXPECT_NE(shown[0].body.find("三明"), std::string::npos) << shown[0].body;
  EXPECT_EQ(testing::occurrences(shown[0].body, "Acme Trading"), 1u)
      << shown[0].body;
  EXPECT_EQ(modem_.hangups(contact), 0u);
  modem_.terminate(contact);
  ASSERT_TRUE(waitUntil([&] { return notes().size() == 2; }, 2.0)) << output();
  const Note missed = notes()[1];
  EXPECT_TRUE(missed.resident);
  EXPECT_TRUE(missed.summary.ends_with(" (3sec)")) << missed.summary;
  EXPECT_NE(missed.summary.find("三明"), std::string::npos) << missed.summary;
  // The ring seconds are the device's, under the call's date.
  auto durations = plist::readDictionary(prefs("zorvel.missed.plist"));
  ASSERT_TRUE(durations);
  ASSERT_EQ(durations->size(), 1u);
  EXPECT_EQ(durations->begin()->second, Value(3));
}

TEST_F(CallerdTest, ReloadsTheBlacklistOnItsNotification) {
  start(Dict{{"EnableBlacklist", true}});
  const auto first = modem_.ring(kContact);
  ASSERT_TRUE(says(": shown", 2.0));
  modem_.end(first);
  testing::writePlist(prefs("zorvel.black.plist"),
                      Dict{{kContact, Value(true)}});
  platform::NotifyBus::send(root_ + "/var/run/zorvel/notify",
                            "ZVBlacklistChanged");
  std::this_thread::sleep_for(std::chrono::milliseconds(200));
  const auto second = modem_.ring(kContact);
  EXPECT_TRUE(hungUp(second, 1.0));
}

TEST_F(CallerdTest, BadCallsNeverStopTheService) {
  start(kBlocking);
  // No number: a withheld caller (decided, not blocked by the area rule).
  auto hidden = modem_.ring(nullptr);
  ASSERT_TRUE(says("from a withheld number", 2.0));
  modem_.end(hidden);
  // 300 digits.
  auto longest = modem_.ring(std::string(300, '7'));
  ASSERT_TRUE(says(": shown", 2.0, 2));
  modem_.end(longest);
  // Bytes that are not UTF-8 (sent as a byte string: D-Bus text cannot
  // carry them): a withheld caller again.
  const guchar bytes[] = {0xff, 0xfe, '1', '3', '8', 0xc3};
  auto binary = modem_.ring(
      g_variant_new_fixed_array(G_VARIANT_TYPE_BYTE, bytes, sizeof bytes, 1));
  ASSERT_TRUE(says("from a withheld number", 2.0, 2));
  modem_.end(binary);
  // A call object that vanishes while callerd reads it.
  auto vanishing = modem_.ring(g_variant_new_string(kBlacklisted), false);
  modem_.callAdded(vanishing);
  modem_.remove(vanishing);
  // Still serving: the next blocked caller is hung up.
  auto after = modem_.ring(kStranger);
  EXPECT_TRUE(hungUp(after, 2.0));
  EXPECT_TRUE(testing::PrivateBus::running(callerd_)) << output();
}

TEST_F(CallerdTest, BusyAddressBookMakesNoStrangerAndNoWait) {
  start(blockingWith(
      {{"BlacklistBlockArea", ""}, {"BlacklistBlockStrangers", true}}));
  lockExclusively(root_ + platform_schema::kAddressBookPath);
  const auto contact = modem_.ring(kContact);
  // Decided at once, and not hung up as a stranger.
  ASSERT_TRUE(says(": shown", 0.6));
  EXPECT_TRUE(said("could not be read: not blocked as a stranger")) << output();
  EXPECT_EQ(modem_.hangups(contact), 0u);
  modem_.end(contact);
  // Readable again: a stranger is one.
  unlock();
  const auto stranger = modem_.ring(kStranger);
  EXPECT_TRUE(hungUp(stranger, 1.0));
}

TEST_F(CallerdTest, CallsEndingWhileTheHistoryIsLockedAreKeptInOrder) {
  const std::string store = root_ + platform_schema::kCallHistoryStorePath;
  ASSERT_TRUE(platform_schema::createDatabase(
      store, platform_schema::Database::kCallHistoryStore));
  start(kBlocking);
  lockExclusively(store);
  std::vector<int64_t> numbers;
  for (int i = 0; i < 5; ++i) {
    numbers.push_back(13407552000 + i);
    const auto asked = std::chrono::steady_clock::now();
    const auto call = modem_.ring(std::to_string(numbers.back()));
    ASSERT_TRUE(hungUp(call, 3.0)) << i;
    // The previous call's row waits; the decision on this one does not.
    EXPECT_LT(std::chrono::steady_clock::now() - asked,
              std::chrono::milliseconds(500))
        << "call " << i << " was decided late";
    modem_.remove(call);
  }
  // Stopped and started again while the history is still locked: nothing
  // is lost, and the rows go in, in call order, once it is free.
  ASSERT_TRUE(says("call 5 from", 2.0));
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  EXPECT_EQ(bus_.end(std::exchange(callerd_, -1)), 0);
  start(kBlocking);
  unlock();
  EXPECT_TRUE(waitUntil(
      [&] {
        return testing::columnValues<int64_t>(
                   store,
                   "SELECT CAST(ZADDRESS AS INTEGER) FROM ZCALLRECORD ORDER "
                   "BY Z_PK") == numbers;
      },
      3.0))
      << output();
}

TEST_F(CallerdTest, EveryCallRingingInIsDecidedAtOnceAndEndsWithModemManager) {
  // A blocked call rings on unseen; the calls that ring in meanwhile get
  // screens and decisions of their own.
  start(blockingWith({{"BlacklistBlockMode", 0}, {"BlacklistBlockAction", 1}}));
  const auto listed = modem_.ring(kBlacklisted);
  ASSERT_TRUE(says("call 1 from", 2.0));
  const auto contact = modem_.ring(kContact);
  EXPECT_TRUE(says("call 2 from " + std::string(kContact) + ": shown", 1.0));
  const auto stranger = modem_.ring(kStranger);
  EXPECT_TRUE(says("call 3 from " + std::string(kStranger) + ": blocked", 1.0));
  // The contact's call, and only it, is on the desktop (the blocked ones'
  // reminder aside).
  ASSERT_TRUE(waitUntil([&] { return !notes().empty(); }, 2.0));
  std::this_thread::sleep_for(std::chrono::milliseconds(1300));
  size_t calls = 0;
  for (const Note& n : notes())
    if (n.urgency != 0) {
      ++calls;
      EXPECT_EQ(n.summary, "Lei Li");
    }
  EXPECT_EQ(calls, 1u);
  for (const auto& path : {listed, contact, stranger})
    EXPECT_EQ(modem_.hangups(path), 0u);
  // ModemManager goes: each call ends once, the one that was shown is
  // missed, and nothing is decided again.
  bus_.end(std::exchange(mm_, -1));
  ASSERT_TRUE(says("waiting for ModemManager", 3.0));
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  EXPECT_EQ(count(": missed"), 1u) << output();
  EXPECT_TRUE(said("call 2 from " + std::string(kContact) + ": missed"));
  EXPECT_EQ(count(" from "), 4u) << output();
  EXPECT_TRUE(testing::PrivateBus::running(callerd_));
}

TEST_F(CallerdTest, AWaitingBlockedCallIsHungUpAndRemindedOnce) {
  start(blockingWith({{"BlacklistBlockMode", 0}}));
  const auto contact = modem_.ring(kContact);
  ASSERT_TRUE(says(": shown", 2.0));
  const auto listed = modem_.ring(kBlacklisted);
  EXPECT_TRUE(hungUp(listed, 1.0));
  EXPECT_TRUE(said("call 2 from " + std::string(kBlacklisted) + ": blocked"))
      << output();
  EXPECT_EQ(modem_.hangups(contact), 0u);
  // The reminder is one quiet notification with the blocked number.
  ASSERT_TRUE(waitUntil([&] { return notes().size() == 2; }, 3.0));
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  auto shown = notes();
  ASSERT_EQ(shown.size(), 2u);
  EXPECT_EQ(shown[1].urgency, 0);
  EXPECT_EQ(shown[1].body, kBlacklisted);
  // SIGTERM: a clean exit.
  EXPECT_EQ(bus_.end(std::exchange(callerd_, -1)), 0);
}

TEST_F(CallerdTest, WaitsForModemManagerWithoutError) {
  // A second private bus without ModemManager on it.
  testing::PrivateBus empty;
  ASSERT_TRUE(empty.ok());
  testing::writePlist(prefs("zorvel.plist"), kBlocking);
  const std::string out = root_ + "/empty.out";
  pid_t pid = empty.spawn({testing::zorvelBinary(), "callerd", "--root", root_,
                           "--bus", "session", "--no-contacts"},
                          out);
  ASSERT_TRUE(waitUntil([&] { return !testing::readFile(out).empty(); }, 10));
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  EXPECT_TRUE(testing::PrivateBus::running(pid));
  EXPECT_EQ(testing::readFile(out),
            "zorvel: waiting for ModemManager on the session bus\n");
  EXPECT_EQ(empty.end(pid), 0);
}

TEST_F(CallerdTest, ThousandCallsInWavesOfTenAreAllDecided) {
  // Under AddressSanitizer freed blocks wait in a quarantine of up to
  // 256 MiB, which would read as growth; without it (other builds ignore
  // the variable) freed memory is reused as in a normal build.
  const char* asan = std::getenv("ASAN_OPTIONS");
  setenv(
      "ASAN_OPTIONS",
      ((asan ? std::string(asan) + ":" : "") + "quarantine_size_mb=0").c_str(),
      1);
  start(kBlocking);
  // ZV_CALLERD_CALLS asks for more calls (the README's figures are of
  // 10,000); the checks are the same.
  const char* asked = std::getenv("ZV_CALLERD_CALLS");
  const int kWave = 10;
  const int kWaves = std::max(100, (asked ? std::atoi(asked) : 0) / kWave);
  long settled = 0;
  // Wall-clock seconds at which each call appeared on the bus, against the
  // mock's log of the hang-ups (in the same order: the calls of a wave are
  // decided as they appear, oldest first).
  std::vector<double> rang;
  auto wall = [] {
    return std::chrono::duration<double>(
               std::chrono::system_clock::now().time_since_epoch())
        .count();
  };
  for (int wave = 0; wave < kWaves; ++wave) {
    std::vector<std::string> paths;
    for (int i = 0; i < kWave; ++i) {
      const std::string path = modem_.ring(
          g_variant_new_string(
              ("1340755" +
               std::to_string(10000 + (wave * kWave + i) % 10000).substr(1))
                  .c_str()),
          false);
      rang.push_back(wall());
      modem_.callAdded(path);
      paths.push_back(path);
    }
    const size_t want = static_cast<size_t>((wave + 1) * kWave);
    ASSERT_TRUE(waitUntil([&] { return hangupTimes().size() == want; }, 20))
        << "wave " << wave << ": " << hangupTimes().size() << " hung up\n"
        << output().substr(0, 2000);
    for (const auto& p : paths) modem_.remove(p);
    if (wave == 9) settled = rssKiB();
  }
  ASSERT_TRUE(waitUntil(
      [&] { return count(": blocked") == size_t(kWaves * kWave); }, 10));
  const long last = rssKiB();
  const std::vector<double> hung = hangupTimes();
  ASSERT_EQ(hung.size(), rang.size());
  std::vector<double> latency;
  double busy = 0;  // seconds from each wave's first call to its last hang-up
  for (size_t i = 0; i < rang.size(); ++i) {
    latency.push_back(hung[i] - rang[i]);
    if (i % kWave == kWave - 1) busy += hung[i] - rang[i - kWave + 1];
  }
  std::sort(latency.begin(), latency.end());
  std::cout << "[ callerd RSS after 100 calls " << settled << " KiB, after "
            << kWaves * kWave << " calls " << last << " KiB; "
            << std::lround(double(rang.size()) / busy)
            << " decisions/s in waves of " << kWave
            << "; appearance to hang-up p50 "
            << std::lround(latency[latency.size() / 2] * 1000) << " ms, p99 "
            << std::lround(latency[latency.size() * 99 / 100] * 1000)
            << " ms ]\n";
  EXPECT_LT(last - settled, 2048) << "memory grew with the calls";
}

}  // namespace
}  // namespace zv
