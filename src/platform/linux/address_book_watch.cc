#include "platform/linux/address_book_watch.h"

#include <gio/gio.h>

#include <filesystem>

namespace zv::platform {

AddressBookWatch::AddressBookWatch(const std::string& database, double settle,
                                   std::function<void()> onChange)
    : name_(std::filesystem::path(database).filename().string()),
      settle_(settle),
      on_change_(std::move(onChange)) {
  // The folder, not the file: SQLite creates and deletes its -wal and
  // -journal files beside the database, and a tool may replace the file.
  const std::string folder =
      std::filesystem::path(database).parent_path().string();
  std::error_code ec;
  std::filesystem::create_directories(folder, ec);
  GFile* dir = g_file_new_for_path(folder.c_str());
  monitor_ = g_file_monitor_directory(dir, G_FILE_MONITOR_WATCH_MOVES, nullptr,
                                      nullptr);
  g_object_unref(dir);
  if (!monitor_) return;
  g_file_monitor_set_rate_limit(monitor_, 100);
  g_signal_connect(monitor_, "changed", G_CALLBACK(&AddressBookWatch::changed),
                   this);
}

AddressBookWatch::~AddressBookWatch() {
  if (timer_) g_source_remove(timer_);
  if (monitor_) {
    g_signal_handlers_disconnect_by_data(monitor_, this);
    g_file_monitor_cancel(monitor_);
    g_object_unref(monitor_);
  }
}

void AddressBookWatch::changed(GFileMonitor*, void* file, void* other,
                               int event, void* self) {
  auto* watch = static_cast<AddressBookWatch*>(self);
  // Reading the database opens it but changes nothing; only events that
  // can carry a new state count.
  switch (event) {
    case G_FILE_MONITOR_EVENT_CHANGES_DONE_HINT:
    case G_FILE_MONITOR_EVENT_DELETED:
    case G_FILE_MONITOR_EVENT_CREATED:
    case G_FILE_MONITOR_EVENT_MOVED_IN:
    case G_FILE_MONITOR_EVENT_MOVED_OUT:
    case G_FILE_MONITOR_EVENT_RENAMED:
    case G_FILE_MONITOR_EVENT_CHANGED:
      break;
    default:
      return;
  }
  for (void* f : {file, other}) {
    if (!f) continue;
    char* base = g_file_get_basename(G_FILE(f));
    const std::string name = base ? base : "";
    g_free(base);
    // The database and its -wal / -journal companions; not -shm, which
    // readers touch too.
    if (name == watch->name_ || name == watch->name_ + "-wal" ||
        name == watch->name_ + "-journal") {
      watch->schedule();
      return;
    }
  }
}

void AddressBookWatch::schedule() {
  if (timer_) g_source_remove(timer_);
  timer_ = g_timeout_add(
      static_cast<guint>(settle_ * 1000),
      [](gpointer data) -> gboolean {
        auto* watch = static_cast<AddressBookWatch*>(data);
        watch->timer_ = 0;
        watch->on_change_();
        return G_SOURCE_REMOVE;
      },
      this);
}

}  // namespace zv::platform
