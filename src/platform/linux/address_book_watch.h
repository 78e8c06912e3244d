// Watches the device's address-book database folder while a host runs and
// calls back once per burst of changes to the database or its journal
// files: the Linux side of the address book's external-change signal, so
// that a change saved by any other program (the sqlite3 shell, a sync, a
// device written anew) reaches the observers as it would on the phone.
//
// Created and destroyed on the thread that runs the main loop; the callback
// runs there, `settle` seconds after the last change of a burst.
#pragma once

#include <functional>
#include <string>

typedef struct _GFileMonitor GFileMonitor;

namespace zv::platform {

class AddressBookWatch {
 public:
  // `database`: host path of AddressBook.sqlitedb.
  AddressBookWatch(const std::string& database, double settle,
                   std::function<void()> onChange);
  ~AddressBookWatch();
  AddressBookWatch(const AddressBookWatch&) = delete;
  AddressBookWatch& operator=(const AddressBookWatch&) = delete;

  bool ok() const { return monitor_ != nullptr; }

 private:
  static void changed(GFileMonitor*, void* file, void* other, int event,
                      void* self);
  void schedule();

  std::string name_;  // the database's file name
  double settle_;
  std::function<void()> on_change_;
  GFileMonitor* monitor_ = nullptr;
  unsigned timer_ = 0;
};

}  // namespace zv::platform
