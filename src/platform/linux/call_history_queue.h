// CallHistoryQueue: finished calls on their way into the device's
// call-history database, for a telephony that runs beside other programs
// which lock that database for seconds at a time.
//
// add() writes the row at once when the database takes it without waiting
// and nothing older is still queued. Otherwise the row joins a queue that is
// kept, in call order, in a journal file (a property list, rewritten
// atomically at every change) and written by one background thread as soon
// as the database takes it, oldest first; a failure is retried, never
// dropped. A queue made over a journal that an earlier run left writes
// those rows first. The calling thread never waits on the database: it
// waits at most for the journal to be rewritten.
//
// Problems are reported once per spell of failures, on the writer thread.
#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

#include "platform/db/call_records.h"

namespace zv::platform {

class CallHistoryQueue {
 public:
  // Where a row goes: the database file (a host path) and its layout.
  struct Target {
    std::string file;
    platform_schema::Database which =
        platform_schema::Database::kCallHistoryStore;
  };

  // Pauses between tries while the database refuses rows.
  static constexpr int kRetryMs = 250;

  // `journal` is a host path; rows found in it are queued first.
  CallHistoryQueue(std::string journal,
                   std::function<void(const std::string&)> problem);
  // Stops the writer; rows not yet written stay in the journal.
  ~CallHistoryQueue();
  CallHistoryQueue(const CallHistoryQueue&) = delete;
  CallHistoryQueue& operator=(const CallHistoryQueue&) = delete;

  // True when the row was written before returning; false when it was
  // queued (it is written later).
  bool add(const Target& target, const platform_schema::FinishedCall& row);
  // Rows not written yet.
  size_t pending() const;

 private:
  struct Entry {
    Target target;
    platform_schema::FinishedCall row;
  };
  void run();
  void saveJournal();  // with mutex_ held
  void loadJournal();

  const std::string journal_;
  const std::function<void(const std::string&)> problem_;
  mutable std::mutex mutex_;
  std::condition_variable wake_;
  std::deque<Entry> rows_;
  bool failing_ = false;
  bool stop_ = false;
  std::thread writer_;
};

}  // namespace zv::platform
