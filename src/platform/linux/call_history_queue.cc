#include "platform/linux/call_history_queue.h"

#include <charconv>
#include <cstdio>
#include <cstdlib>

#include "platform/plist.h"

namespace zv::platform {
namespace {

namespace ps = platform_schema;

// Waiting here is fine (the writer's own thread), but not for long: a stop
// is noticed between tries.
constexpr int kWriterBusyMs = 200;

// Dates and durations go into the journal as text: the shortest form that
// reads back as the same double.
std::string exact(double value) {
  char out[32];
  auto [end, ec] = std::to_chars(out, out + sizeof out, value);
  return std::string(out, end);
}

double number(const Dict& d, const char* key) {
  auto it = d.find(key);
  if (it == d.end()) return 0;
  if (it->second.isString())
    return std::strtod(it->second.stringValue().c_str(), nullptr);
  return it->second.doubleValue();
}

bool flag(const Dict& d, const char* key) {
  auto it = d.find(key);
  return it != d.end() && it->second.boolValue();
}

}  // namespace

CallHistoryQueue::CallHistoryQueue(
    std::string journal, std::function<void(const std::string&)> problem)
    : journal_(std::move(journal)), problem_(std::move(problem)) {
  loadJournal();
  writer_ = std::thread([this] { run(); });
}

CallHistoryQueue::~CallHistoryQueue() {
  {
    std::lock_guard<std::mutex> hold(mutex_);
    stop_ = true;
  }
  wake_.notify_all();
  writer_.join();
}

bool CallHistoryQueue::add(const Target& target, const ps::FinishedCall& row) {
  std::unique_lock<std::mutex> hold(mutex_);
  // Only the caller adds rows, so an empty queue stays empty while the row
  // is tried: nothing older can be overtaken.
  if (rows_.empty()) {
    hold.unlock();
    if (ps::appendCallRecord(target.file, target.which, row, nullptr, 0))
      return true;
    hold.lock();
  }
  rows_.push_back({target, row});
  saveJournal();
  hold.unlock();
  wake_.notify_all();
  return false;
}

size_t CallHistoryQueue::pending() const {
  std::lock_guard<std::mutex> hold(mutex_);
  return rows_.size();
}

void CallHistoryQueue::run() {
  std::unique_lock<std::mutex> hold(mutex_);
  while (!stop_) {
    if (rows_.empty()) {
      wake_.wait(hold);
      continue;
    }
    const Entry next = rows_.front();
    hold.unlock();
    std::string error;
    const bool written = ps::appendCallRecord(
        next.target.file, next.target.which, next.row, &error, kWriterBusyMs);
    hold.lock();
    if (written) {
      rows_.pop_front();
      saveJournal();
      if (failing_ && rows_.empty()) failing_ = false;
      continue;
    }
    if (!failing_) {
      failing_ = true;
      const size_t kept = rows_.size();
      hold.unlock();
      if (problem_)
        problem_("call history not written yet (" + std::to_string(kept) +
                 (kept == 1 ? " call" : " calls") + " kept): " + error);
      hold.lock();
    }
    wake_.wait_for(hold, std::chrono::milliseconds(kRetryMs),
                   [this] { return stop_; });
  }
}

void CallHistoryQueue::saveJournal() {
  Array rows;
  rows.reserve(rows_.size());
  for (const Entry& e : rows_) {
    const ps::FinishedCall& r = e.row;
    rows.emplace_back(Dict{
        {"file", Value(e.target.file)},
        {"which", Value(static_cast<int>(e.target.which))},
        {"address", Value(r.address)},
        {"date", Value(exact(r.date))},
        {"duration", Value(exact(r.duration))},
        {"originated", Value(r.originated)},
        {"answered", Value(r.answered)},
        {"read", Value(r.read)},
        {"video", Value(r.video)},
        {"recordId", Value(r.recordId)},
        {"serial", Value(std::to_string(r.serial))},
    });
  }
  // A journal that cannot be written still leaves the rows in memory; the
  // writer reports the database, this is the rarer failure.
  if (rows.empty()) {
    std::remove(journal_.c_str());
  } else if (!plist::writeFile(journal_, Value(std::move(rows))) && problem_) {
    problem_("cannot keep the unwritten calls in " + journal_);
  }
}

void CallHistoryQueue::loadJournal() {
  auto value = plist::readFile(journal_);
  if (!value || !value->array()) return;
  for (const Value& item : *value->array()) {
    const Dict* d = item.dict();
    if (!d) continue;
    Entry e;
    auto text = [&](const char* key) {
      auto it = d->find(key);
      return it == d->end() ? std::string() : it->second.stringValue();
    };
    e.target.file = text("file");
    const int which = static_cast<int>(number(*d, "which"));
    e.target.which = static_cast<ps::Database>(which);
    if (e.target.file.empty() ||
        (e.target.which != ps::Database::kCallHistoryStore &&
         e.target.which != ps::Database::kCallHistoryDb))
      continue;  // not a row this queue wrote
    e.row.address = text("address");
    e.row.date = number(*d, "date");
    e.row.duration = number(*d, "duration");
    e.row.originated = flag(*d, "originated");
    e.row.answered = flag(*d, "answered");
    e.row.read = flag(*d, "read");
    e.row.video = flag(*d, "video");
    e.row.recordId = static_cast<int64_t>(number(*d, "recordId"));
    e.row.serial = std::strtoull(text("serial").c_str(), nullptr, 10);
    rows_.push_back(std::move(e));
  }
}

}  // namespace zv::platform
