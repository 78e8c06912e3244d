// ZVRecentsController: what the Phone app's Recents list gains. Each row gets
// the area of the other party's number (appended to a contact's label,
// replacing a stranger's), the ring time of its missed calls ("(12sec)",
// summed over the calls the row groups) and a round avatar at the left with
// the texts moved clear of it. The program's own longer call history is kept
// in step with the host's list: each time the list comes on screen, calls
// beyond the host's 100 are put back from the backup (CallHistoryLimit 101
// or more), and deleting one call or clearing the list deletes the same
// calls from the backup.
//
// Call dates reach the backup and the ring-time store in the unit of the
// system generation: seconds since 2001-01-01 from 8.0 on, since 1970
// before. Decorating a reused cell again is harmless: the containment,
// ends-with and begins-with tests keep texts from growing.
//
// The host is reached only through RecentsHost (supplied by the recents
// hooks). A per-process singleton; main thread only, except the avatar
// pictures, which are loaded on a background queue.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "lists/recents_host.h"
#include "platform/ui/table_view.h"

namespace zv {

class ZVAddressBook;
class ZVAreaLoader;
class ZVCallHistory;
class ZVPhoneSettings;

class ZVRecentsController {
 public:
  static constexpr int kCallTypeIconTag = 10086;
  static constexpr double kAvatarSide = 40;
  static constexpr double kCallTypeIconSide = 16;
  static constexpr double kSeparatorInset = 67;
  static constexpr double kEditingSeparatorInset = 105;
  static constexpr int kDeleteEditingStyle = 1;
  static constexpr const char* kDatabaseChangedNotification =
      "kCallHistoryDatabaseChangedNotification";
  static constexpr const char* kOccurrenceDateKey = "kCHCallOccurrenceDateKey";
  static constexpr const char* kLegacyOccurrenceDateKey = "RecentCallDate";

  static std::shared_ptr<ZVRecentsController> sharedInstance();
  // Registers the call-history store's change callback.
  ZVRecentsController();

  void setHost(std::shared_ptr<RecentsHost> host) { host_ = std::move(host); }

  // --- A row, after the host made or reused it ------------------------------
  void areaCell(const rt::Id& cell);
  void ringCell(const rt::Id& cell);
  void avatarCell(const rt::Id& cell);
  // After every layout of a row.
  void avatarLayoutCell(const rt::Id& cell);

  // --- The history backup ----------------------------------------------------
  // Before the list comes on screen: restores backed-up calls and has the
  // host reload.
  void syncDeletedCalls(const rt::Id& viewController);
  // The user cleared the list.
  void deleteAllCalls();
  // The user deleted one call (before 8.0: the host manager's deleteCall:).
  void deleteCall(const rt::Id& call);
  // The user deleted a row (8.0 on), called while the row still exists.
  void deleteRecents(const rt::Id& viewController, const rt::Id& tableView,
                     int64_t editingStyle, int64_t row);

  // Blanks put before the "Name" and "Label" texts, by their font sizes.
  static int nameBlanks(double fontSize);
  static int labelBlanks(double fontSize);
  // A call date in seconds since the epoch of the running system generation
  // (2001 from 8.0 on, 1970 before); nothing when `date` is no date.
  static std::optional<double> callTime(const Value& date);

 private:
  bool syncActive() const;
  // The other party's number and contact id, by system generation.
  std::string number(const rt::Id& call) const;
  int32_t contactId(const rt::Id& call) const;
  int64_t ringSeconds(const rt::Id& call) const;
  void placeCallTypeIcon(const rt::Id& cell, ui::UITableViewCell& table,
                         ui::UILabel* name, ui::UILabel* label);
  void setAvatar(const rt::Id& cell, ui::UITableViewCell& table);

  std::shared_ptr<ZVPhoneSettings> _settings;
  std::shared_ptr<ZVAreaLoader> _area;
  std::shared_ptr<ZVAddressBook> _addressbook;
  std::shared_ptr<ZVCallHistory> _callhistory;
  std::shared_ptr<RecentsHost> host_;
};

}  // namespace zv
