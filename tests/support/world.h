// The end-to-end test harness: a simulated world on a fresh device root,
// a device builder for what the hosts read (area database, reading table,
// contacts, settings and other property lists), and hosts started on it at
// a system version and screen size, with the extension loaded the way the
// platform's loader does.
//
//   class BlockingTest : public testing::World {};
//   TEST_F(BlockingTest, ...) {
//     installChinaDatabase();
//     writeSettings({{"EnableBlacklist", true}});
//     auto& springboard = start(hosts::springboardHost(), "7.1", "4");
//     springboard.run([&] { ... });
//     advance(10);
//     EXPECT_EQ(events("sound").size(), 1u);
//   }
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <type_traits>

#include "hooks/modules.h"
#include "hosts/kit/call_screens.h"
#include "hosts/kit/host_kit.h"
#include "platform/db/call_records.h"
#include "platform/db/platform_schema.h"
#include "platform/sim/device_presets.h"
#include "support/device_db.h"
#include "support/device_files.h"
#include "support/sim_fixture.h"

namespace zv::testing {

class World : public SimTest {
 protected:
  // --- The device -------------------------------------------------------
  // A host path under the device root for a device path.
  std::string devicePath(std::string_view path) const {
    return root_ + std::string(path);
  }
  void writeDevicePlist(std::string_view path, const Dict& dict) {
    writePlist(devicePath(path), dict);
  }
  void writeDeviceBytes(std::string_view path, const std::string& bytes) {
    writeFile(devicePath(path), bytes);
  }
  // The general settings file ("zorvel.plist").
  void writeSettings(const Dict& settings) {
    writeDevicePlist("/var/mobile/Library/Preferences/zorvel.plist", settings);
  }
  // The China area database as /Library/Zorvel/Area/<name>.
  void installChinaDatabase(std::string_view name = "China") {
    writeDeviceBytes("/Library/Zorvel/Area/" + std::string(name),
                     chinaDatabase());
  }
  // The committed reading table as /Library/Zorvel/Table/PinYin.txt.
  void installReadingTable() {
    writeDeviceBytes("/Library/Zorvel/Table/PinYin.txt",
                     readFile(ZV_SOURCE_DIR "/data/table/PinYin.txt"));
  }

  // The ring durations file ("zorvel.missed.plist"); empty when missing.
  Dict ringDurations() const {
    auto v = plist::readFile(
        devicePath("/var/mobile/Library/Preferences/zorvel.missed.plist"));
    if (!v || !v->dict()) return {};
    return *v->dict();
  }
  // The call dates of the call history of a system generation, oldest row
  // first, in the database's own unit.
  std::vector<double> callDates(std::string_view systemVersion) const {
    namespace schema = platform_schema;
    const auto which = schema::callHistoryDatabase(systemVersion);
    return columnValues<double>(
        devicePath(schema::callHistoryPath(which)),
        which == schema::Database::kCallHistoryStore
            ? "SELECT ZDATE FROM ZCALLRECORD ORDER BY Z_PK"
            : "SELECT date FROM call ORDER BY ROWID");
  }

  // --- Hosts --------------------------------------------------------------
  // Starts `host` in a new simulated process on a phone with that system
  // version and screen, loads the extension (pass nullptr for a host
  // without it) and runs what start-up queued for now.
  platform::SimProcess& start(
      const hosts::HostDefinition& host, std::string_view systemVersion = "8.1",
      std::string_view screenInches = "4.7",
      hosts::ExtensionEntry extension = ZorvelInitializer) {
    auto facts = platform::simulatedDevice(systemVersion, screenInches);
    EXPECT_TRUE(facts) << "no phone has a " << screenInches << "-inch screen";
    auto& process = hosts::launchSimulated(
        world_, host, facts.value_or(platform::DeviceFacts{}), extension);
    world_.advance(0);
    return process;
  }
  // start() with `settings` written as the settings file first.
  platform::SimProcess& startHost(const hosts::HostDefinition& host,
                                  const Dict& settings,
                                  std::string_view systemVersion = "8.1",
                                  std::string_view screenInches = "4.7") {
    writeSettings(settings);
    return start(host, systemVersion, screenInches);
  }
  // Runs `f` in `process`, then lets the world run `settle` seconds (at
  // least what was queued for now); gives back what `f` returns.
  template <typename F>
  auto in(platform::SimProcess& process, F&& f, double settle = 0) {
    if constexpr (std::is_void_v<decltype(f())>) {
      process.run(std::forward<F>(f));
      world_.advance(settle);
    } else {
      auto result = process.run(std::forward<F>(f));
      world_.advance(settle);
      return result;
    }
  }

  // The call-screen host (springboard or in-call service) of `process`.
  static hosts::CallScreenHost& callScreens(platform::SimProcess& process) {
    return *process.run([] {
      return dynamic_cast<hosts::CallScreenHost*>(
          ui::UIApplication::shared().get());
    });
  }

  // --- Time, calls and side effects ---------------------------------------
  platform::SimTelephony& network() { return world_.telephony(); }
  void advance(double seconds) { world_.advance(seconds); }
  std::vector<platform::SimEvent> events(std::string_view kind) const {
    return world_.events(kind);
  }
  // The details of the events of one kind, in order.
  std::vector<std::string> details(std::string_view kind) const {
    std::vector<std::string> out;
    for (const auto& e : world_.events(kind)) out.push_back(e.detail);
    return out;
  }
};

}  // namespace zv::testing
