// The Phone app's own list of recent calls, read from the device's
// call-history database of the running system generation (CallHistory
// .storedata's ZCALLRECORD from 8.0, call_history.db's `call` before), as
// the platform's Recents manager keeps it: newest first, consecutive calls
// of one number and one kind (missed, received, dialled) grouped into one
// row. The platform keeps the database itself to its 100 newest calls when
// it records one; the list shows every call the database holds, so calls
// put back from a backup appear too.
//
// Deleting a row deletes the calls it groups; clearing deletes them all.
// Failures leave the database as it was and report false.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace zv::hosts {

enum class CallKind { Received, Dialled, Missed };

struct RecentCall {
  std::string number;
  CallKind kind = CallKind::Received;
  // One entry per grouped call, newest first: the row's key (ROWID or
  // Z_PK), its date in seconds since 2001-01-01, its duration in seconds.
  std::vector<int64_t> rows;
  std::vector<double> dates;
  std::vector<double> durations;
  // The contact's record id, -1 when the number belongs to none.
  int32_t contactId = -1;
};

// The calls of the database under the current platform's device root.
// 7.x stores a call's contact with it; 8.x does not (contactId stays -1 and
// the caller finds the number's owner).
std::vector<RecentCall> loadRecentCalls(bool modern);

bool deleteRecentCall(const RecentCall& call, bool modern);
bool deleteAllRecentCalls(bool modern);

}  // namespace zv::hosts
