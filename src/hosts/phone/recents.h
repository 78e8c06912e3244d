// The Phone application's Recents tab: the platform's list of recent calls
// read from the device's call-history database (hosts/phone/recent_calls.h),
// one row per group of calls. The classes and selectors are those of
// hostsdk/phone.h:
//
//   PHRecentsViewController  the list (table, recentsManager), its rows
//                            (tableView:cellForRowAtIndexPath:), deleting a
//                            row (tableView:commitEditingStyle:forRowAt
//                            IndexPath:) and clearing (_clearButtonTapped:)
//   PHRecentsCell            call, allViews ("Name", "Label",
//                            "CallTypeIcon", and "Count" before 8.0), count,
//                            isEditing, layoutSubviews
//   PHRecentsManager         the calls; deleteCall:, deleteAllCalls, and
//                            callHistorySignificantChangeNotification (7.x)
//   CHRecentCall (8.x), RecentCall (7.x), PHPhoneBookManager
//
// From 8.0 the manager reloads on the in-process notification
// "kCallHistoryDatabaseChangedNotification"; before, on its significant-
// change call. The list is also read afresh each time it appears. Deleting
// or clearing deletes the rows from the database. Everything the screen
// does to itself goes through runtime messages, so a replaced method sees
// it.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "hosts/contacts/records.h"
#include "hosts/phone/recent_calls.h"
#include "platform/ui/table_view.h"
#include "platform/ui/view_controller.h"

namespace zv::hosts {

// A call object: CHRecentCall from 8.0, RecentCall before.
class RecentCallObject : public rt::Object {
 public:
  static constexpr const char* kClassName = "CHRecentCall";
  explicit RecentCallObject(rt::Class* isa) : rt::Object(isa) {}
  RecentCall call;
  std::string name;   // the contact's name, or empty for a stranger
  std::string label;  // the number's label on the contact's card
  std::shared_ptr<HostRecord> record;
};

class PhoneBookManager : public rt::Object {
 public:
  static constexpr const char* kClassName = "PHPhoneBookManager";
  explicit PhoneBookManager(rt::Class* isa) : rt::Object(isa) {}
  std::shared_ptr<HostRecord> record;
};

class RecentsCell : public ui::UITableViewCell {
 public:
  static constexpr const char* kClassName = "PHRecentsCell";
  explicit RecentsCell(rt::Class* isa) : ui::UITableViewCell(isa) {}
  void build();
  // The host's own drawing of a call.
  void show(const std::shared_ptr<RecentCallObject>& call);
  // The host's own layout (layoutSubviews before any hook).
  void layOut();
  // Sends layoutSubviews, so a replaced layout runs.
  void layoutSubviews() override;

  std::shared_ptr<RecentCallObject> call;
  std::shared_ptr<ui::UILabel> nameLabel, label, countLabel;
  std::shared_ptr<ui::UIImageView> callTypeIcon;
  bool editing = false;
};

class RecentsViewController;

class RecentsManager : public rt::Object {
 public:
  static constexpr const char* kClassName = "PHRecentsManager";
  explicit RecentsManager(rt::Class* isa) : rt::Object(isa) {}
  // Reads the calls from the database.
  void reload();
  std::vector<std::shared_ptr<RecentCallObject>> calls;
  std::weak_ptr<RecentsViewController> controller;
};

class RecentsViewController : public ui::UIViewController {
 public:
  static constexpr const char* kClassName = "PHRecentsViewController";
  explicit RecentsViewController(rt::Class* isa) : ui::UIViewController(isa) {}
  static std::shared_ptr<RecentsViewController> make();

  std::shared_ptr<ui::UITableView> table();
  // Redraws the rows from the manager's calls.
  void refresh();

  // User actions: the Edit button, swiping a row's Delete, Clear.
  void setEditing(bool on);
  bool deleteRow(size_t row);
  void clearAll();

  std::shared_ptr<RecentsManager> manager;
  bool editing = false;

 protected:
  std::shared_ptr<ui::UIView> loadView() override;
};

void registerRecentsClasses();

}  // namespace zv::hosts
