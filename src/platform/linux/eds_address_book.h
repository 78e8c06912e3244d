// The user's contacts in Evolution Data Server (the address book of GNOME
// Contacts, GNOME Calls and Phosh), through its client library.
//
// readEdsContacts() reads every enabled address book once, on the calling
// thread (the library's calls are made synchronously). EdsWatch follows
// the books from a thread of its own with its own GLib main context: it
// hands a full snapshot to its callback once at start and again `settle`
// seconds after each burst of changes (a contact added, changed or
// removed, a book added or removed), so the program's main loop never
// waits on the server. Without a server (none installed, none reachable on
// the session bus) the snapshot says so in `problem` and nothing fails.
// A snapshot with a problem is followed by another `firstRetry` seconds
// later, then at doubling intervals (at most five minutes) until one is
// whole: a server started after the watch, or a book that failed to open,
// is picked up without a change signal.
#pragma once

#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "platform/db/contact_store.h"

namespace zv::platform {

struct EdsSnapshot {
  std::vector<platform_schema::ExternalContact> contacts;
  // Books read in full, and every book the server knows: a contact of a
  // book that failed to answer is kept, one of a book that is gone is not.
  std::set<std::string> readBooks, knownBooks;
  bool reachable = false;
  std::string problem;  // the first thing that went wrong, "" none

  // Whether a stored contact with this external identifier, missing from
  // `contacts`, is gone from the server (and may be removed).
  bool gone(const std::string& externalId) const;
};

// External identifiers of EDS contacts: kEdsPrefix + book + "/" + uid.
inline constexpr char kEdsPrefix[] = "eds:";

EdsSnapshot readEdsContacts();

class EdsWatch {
 public:
  EdsWatch(double settle, std::function<void(const EdsSnapshot&)> onSnapshot,
           double firstRetry = 5);
  ~EdsWatch();
  EdsWatch(const EdsWatch&) = delete;
  EdsWatch& operator=(const EdsWatch&) = delete;

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace zv::platform
