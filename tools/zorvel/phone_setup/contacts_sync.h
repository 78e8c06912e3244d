// Storing contacts from elsewhere (Evolution Data Server, vCard files) in a
// device's address book, and what follows a change: the keypad's
// AddressBookChanged flag is set, so every host rebuilds its persons cache
// on its next load (running hosts also see the database change itself).
// ContactsFollower keeps a running callerd's device in step with EDS.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/db/contact_store.h"

namespace zv::platform {
class EdsWatch;
}

namespace zv::cli {

// Stores the contacts under the device folder `root`, removing the stored
// ones `mayRemove` accepts that are not among them; marks the persons cache
// stale when anything changed. Throws CommandError.
platform_schema::StoreSummary storeAndMark(
    const std::string& root,
    const std::vector<platform_schema::ExternalContact>& contacts,
    const std::function<bool(const std::string&)>& mayRemove = {});

// "12 added, 1 updated, 0 removed, 40 unchanged".
std::string summaryText(const platform_schema::StoreSummary& s);

class ContactsFollower {
 public:
  // `log` gets one line per sync that changed something and per problem;
  // it is called on the main loop.
  ContactsFollower(std::string root, std::function<void(std::string)> log);
  ~ContactsFollower();

  // Quiet time after a change in EDS before the device is brought in step.
  static constexpr double kSettle = 0.3;

 private:
  std::unique_ptr<platform::EdsWatch> watch_;
};

}  // namespace zv::cli
