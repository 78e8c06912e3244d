// Messages with the extension loaded on a device with contacts, a group,
// and the device generator's conversations and check-mark pictures.
#pragma once

#include <gtest/gtest.h>

#include "devicegen/device_image.h"
#include "hosts/messages/app.h"
#include "hosts/messages/composer.h"
#include "messages/group_view_controller.h"
#include "messages/sms_controller.h"
#include "platform/db/platform_schema.h"
#include "search/address_book.h"
#include "support/device_db.h"
#include "support/device_people.h"
#include "support/world.h"

namespace zv::testing {

class MessagesE2ETest : public World {
 protected:
  // Record 1 is the owner's card (MyInfo), with no conversation; Wei,
  // Anna and Lin have one each, newest first, then the generator's
  // strangers. The owner and Wei have pictures; Wei and Anna are the group
  // "Family".
  MessagesE2ETest() {
    installChinaDatabase();
    auto people = writeDevicePeople(
        root_, {deviceContact(1, "Ming", "Li", "13600000000"),
                deviceContact(2, "Wei", "Zhang", "13800138000"),
                deviceContact(3, "Anna", "Smith", "13912345678"),
                deviceContact(4, "Lin", "Chen", "13501234567")});
    for (int i : {0, 1}) people.contacts[i].picture = DevicePicture::kPng;
    writeAddressBookImages(root_ + platform_schema::kAddressBookImagesPath,
                           people);
    execSql(root_ + platform_schema::kAddressBookPath,
            "INSERT INTO ABGroup (ROWID, Name) VALUES (1, 'Family');"
            "INSERT INTO ABGroupMembers (group_id, member_type, member_id) "
            "VALUES (1, 0, 2), (1, 0, 3);");
    writeMessagesData(root_, people);
    settings_ = Dict{{"Enable", true},
                     {"EnableArea", true},
                     {"EnableAvatar", true},
                     {"SMSSelectGroup", true},
                     {"MyInfo", 1}};
  }

  // Starts Messages with the extension on a phone of that system and screen.
  void start(const std::string& version = "8.1",
             const std::string& inches = "4") {
    proc_ = &startHost(hosts::messagesHost(), settings_, version, inches);
    app_ = proc_->run([] { return hosts::MessagesApplication::shared(); });
    ASSERT_NE(app_, nullptr);
  }
  // Runs `f` in Messages and lets 0.1 s pass (animations, queued work).
  template <typename F>
  auto run(F&& f) {
    return in(*proc_, std::forward<F>(f), 0.1);
  }
  std::shared_ptr<hosts::ConversationListCell> row(size_t r) {
    return std::dynamic_pointer_cast<hosts::ConversationListCell>(
        app_->list->visibleCell({0, r}));
  }
  std::shared_ptr<ui::UILabel> areaLabel(size_t r) {
    return std::dynamic_pointer_cast<ui::UILabel>(
        row(r)->contentView()->viewWithTag(ZVSMSController::kAreaLabelTag));
  }
  std::string area(const std::string& number) {
    return proc_->run([&] {
      return ZVAreaLoader::sharedInstance()
          ->getArea(number, true, false)
          .value_or("");
    });
  }
  // The screen on top (the group screen, its checklist), if of type T.
  template <typename T>
  std::shared_ptr<T> top() {
    return std::dynamic_pointer_cast<T>(app_->topController());
  }

  Dict settings_;
  platform::SimProcess* proc_ = nullptr;
  std::shared_ptr<hosts::MessagesApplication> app_;
};

}  // namespace zv::testing
