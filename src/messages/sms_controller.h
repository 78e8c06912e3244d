// ZVSMSController: what the system adds to the Messages application. In the
// conversation list: the area of each conversation's number in a grey label
// (tag 10086) 6 points right of the sender name and clipped by the date, and
// the contact's round picture (50 points) with the labels moved aside for
// it. In a conversation: the pictures beside the messages (28 points; the
// user's own picture beside sent ones). In the new-message composer: a
// "Group" button that opens the recipient groups (ZVSMSGroupViewController)
// and puts the numbers chosen there in place of the composer's recipients.
//
// Each feature follows its settings (ZVSMSSettings) at the moment it runs.
// Pictures appear only on the 3.5-inch and 4-inch screens; other screens
// keep the host's look. The host is reached through ZVSMSHost.
#pragma once

#include <cstdint>
#include <memory>

#include "messages/group_view_controller.h"
#include "messages/sms_host.h"

namespace zv {

class ZVAddressBook;
class ZVAreaLoader;
class ZVSMSSettings;

class ZVSMSController : public ZVSMSGroupViewControllerDelegate,
                        public std::enable_shared_from_this<ZVSMSController> {
 public:
  static constexpr int kAreaLabelTag = 10086;
  static constexpr double kListAvatarSize = 50;
  static constexpr double kChatAvatarSize = 28;

  static std::shared_ptr<ZVSMSController> sharedInstance();
  ZVSMSController();

  void setHost(std::shared_ptr<ZVSMSHost> host) { host_ = std::move(host); }

  // After the host filled a list cell for a conversation.
  void areaCell(const rt::Id& cell, const rt::Id& conversation);
  void avatarCell(const rt::Id& cell, const rt::Id& conversation);
  // After the host laid out a list cell.
  void avatarLayoutCell(const rt::Id& cell);
  void areaLayoutCell(const rt::Id& cell);
  // After the transcript made a cell for a message.
  void avatarChat(const rt::Id& transcript, const rt::Id& cell);
  // After the composer updated its navigation buttons.
  void groupButton(const rt::Id& transcript);
  // The "Group" button's action.
  void groupAction(const rt::Id& sender);
  void ZVSMSGroupViewControllerDone(ZVSMSGroupViewController& group) override;

 private:
  bool areaOn() const;
  static bool smallScreen();
  static bool modernComposer();
  rt::Id toField() const;

  std::shared_ptr<ZVSMSSettings> _settings;
  std::shared_ptr<ZVAreaLoader> _area;
  std::shared_ptr<ZVAddressBook> _addressbook;
  rt::WeakId _transcript;
  std::shared_ptr<ZVSMSHost> host_;
};

}  // namespace zv
