// A simulated world with an address book and telephony processes, readers
// of the device's call-history databases and of the world's record, and a
// process's calls as text.
#pragma once

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "hostsdk/telephony.h"
#include "platform/db/call_records.h"
#include "platform/db/platform_schema.h"
#include "platform/db/sqlite_db.h"
#include "platform/runtime/object.h"
#include "platform/sim/sim_platform.h"
#include "platform/telephony/call_objects.h"
#include "support/device_db.h"
#include "support/sim_fixture.h"

namespace zv::testing {

namespace ps = platform_schema;

// One row of either call-history layout, in common terms.
struct HistoryRow {
  std::string address;
  double date = 0;  // seconds since 1970
  double duration = 0;
  bool outgoing = false;
  bool answered = false;  // store only
  int read = 0;
  int64_t recordId = -1;  // call_history.db only
  int kind = 0;           // ZCALLTYPE or flags
  bool operator==(const HistoryRow&) const = default;
  friend void PrintTo(const HistoryRow& r, std::ostream* os) {
    *os << "{" << r.address << " " << std::fixed << r.date << " " << r.duration
        << " out=" << r.outgoing << " answered=" << r.answered
        << " read=" << r.read << " record=" << r.recordId << " kind=" << r.kind
        << "}";
  }
};

class TelephonyTest : public SimTest {
 protected:
  platform::SimProcess& launch(const std::string& bundle,
                               const std::string& version = "8.1") {
    platform::DeviceFacts facts;
    facts.systemVersion = version;
    auto& process = world_.launch(bundle, facts);
    process.run([] { platform::registerTelephonyClasses(rt::runtime()); });
    return process;
  }

  // An address book with the given (record id, number, label) phones.
  struct Phone {
    int record;
    std::string number, label;
  };
  void writeAddressBook(const std::vector<Phone>& phones) {
    const std::string file = root_ + ps::kAddressBookPath;
    ASSERT_TRUE(ps::createDatabase(file, ps::Database::kAddressBook));
    std::string sql;
    for (const Phone& p : phones) {
      const std::string r = std::to_string(p.record), l = "'" + p.label + "'";
      sql += "INSERT OR IGNORE INTO ABMultiValueLabel (value) SELECT " + l +
             " WHERE " + l +
             " != ''; INSERT OR IGNORE INTO ABPerson (ROWID, "
             "First) VALUES (" +
             r +
             ", 'P'); INSERT INTO ABMultiValue "
             "(record_id, property, identifier, label, value) VALUES (" +
             r +
             ", 3, 0, (SELECT ROWID FROM ABMultiValueLabel WHERE value = " + l +
             "), '" + p.number + "');";
    }
    execSql(file, sql);
  }

  // Every row of the 8.x store or of the 7.x database, oldest first.
  std::vector<HistoryRow> historyRows(bool store) {
    sql::Database db(
        root_ + (store ? ps::kCallHistoryStorePath : ps::kCallHistoryDbPath));
    sql::Statement s(
        db, store ? "SELECT ZADDRESS, ZDATE + " +
                        std::to_string(ps::kReferenceDateOffset) +
                        ", ZDURATION, ZORIGINATED, ZANSWERED, ZREAD, -1, "
                        "ZCALLTYPE FROM ZCALLRECORD ORDER BY Z_PK"
                  : "SELECT address, date, duration, flags & 1, 0, read, id, "
                    "flags FROM call ORDER BY ROWID");
    std::vector<HistoryRow> rows;
    while (s.step())
      rows.push_back({s.text(0).value_or("<null>"), s.real(1), s.real(2),
                      s.int64(3) != 0, s.int64(4) != 0, int(s.int64(5)),
                      s.int64(6), int(s.int64(7))});
    return rows;
  }
  std::vector<HistoryRow> storeRows() { return historyRows(true); }
  std::vector<HistoryRow> dbRows() { return historyRows(false); }

  // The world's record of one kind of side effect: "time process detail".
  std::vector<std::string> effects(std::string_view kind) {
    std::vector<std::string> out;
    for (const auto& e : world_.events(kind)) {
      std::ostringstream line;
      line << e.time << " " << e.process << " " << e.detail;
      out.push_back(line.str());
    }
    return out;
  }

  platform::SimTelephony& network() { return world_.telephony(); }
};

using Lines = std::vector<std::string>;

// The calling process's call centre and its incoming voice and video calls.
inline rt::Id center() {
  return rt::send(rt::classObject(rt::getClass(sdk::TUCallCenter::kName)),
                  sdk::TUCallCenter::sharedInstance);
}
inline rt::Id incoming() {
  return rt::send(center(), sdk::TUCallCenter::incomingCall);
}
inline rt::Id incomingVideo() {
  return rt::send(center(), sdk::TUCallCenter::incomingVideoCall);
}
// A call as a hook reads it: "status destination abUID label", then
// "blocked", "outgoing" and "no handle" where they hold.
inline std::string describe(const rt::Id& call) {
  if (!call) return "none";
  auto text = [](const std::optional<std::string>& s) {
    return s.value_or("nil");
  };
  return std::to_string(rt::send(call, sdk::TUCall::status)) + " " +
         text(rt::send(call, sdk::TUCall::destinationID)) + " " +
         std::to_string(rt::send(call, sdk::TUCall::abUID)) + " " +
         text(rt::send(call, sdk::TUCall::localizedLabel)) +
         (rt::send(call, sdk::TUCall::isBlocked) ? " blocked" : "") +
         (rt::send(call, sdk::TUCall::isOutgoing) ? " outgoing" : "") +
         (rt::send(call, sdk::TUCall::call) ? "" : " no handle");
}

}  // namespace zv::testing
