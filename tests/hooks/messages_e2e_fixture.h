// Messages with the extension loaded on a device with contacts (one with a
// picture), a group, a messages database and the check-mark pictures.
#pragma once

#include <gtest/gtest.h>

#include "devicegen/device_image.h"
#include "hosts/messages/app.h"
#include "hosts/messages/composer.h"
#include "messages/group_view_controller.h"
#include "messages/sms_controller.h"
#include "platform/db/messages_schema.h"
#include "platform/db/platform_schema.h"
#include "search/address_book.h"
#include "support/device_db.h"
#include "support/device_people.h"
#include "support/world.h"

namespace zv::testing {

class MessagesE2ETest : public World {
 protected:
  MessagesE2ETest() {
    installChinaDatabase();
    auto people = writeDevicePeople(
        root_, {deviceContact(1, "Wei", "Zhang", "13800138000"),
                deviceContact(2, "Anna", "Smith", "13912345678"),
                deviceContact(3, "Lin", "Chen", "13501234567")});
    people.contacts[0].picture = DevicePicture::kPng;
    people.contacts[0].initial = 'W';
    writeAddressBookImages(root_ + platform_schema::kAddressBookImagesPath,
                           people);
    const std::string book = root_ + platform_schema::kAddressBookPath;
    execSql(book,
            "INSERT INTO ABGroup (ROWID, Name) VALUES (1, 'Family');"
            "INSERT INTO ABGroupMembers (group_id, member_type, member_id) "
            "VALUES (1, 0, 1), (1, 0, 2);");
    writeMessages({{"13800138000",
                    {{false, "晚上一起吃饭吗？", false}, {true, "好的", true}}},
                   {"13912345678", {{false, "See you at 7", true}}},
                   {"13501234567", {{false, "Hello", true}}},
                   {"13701234567", {{false, "快递到了", false}}}});
    for (bool checked : {true, false})
      writeDeviceBytes(
          checked ? "/Library/Zorvel/checked.png"
                  : "/Library/Zorvel/notchecked.png",
          ui::Image::filled(44, 44, 2,
                            checked ? ui::Pixel{0, 122, 255, 255}
                                    : ui::Pixel{199, 199, 204, 255})
              .encodePng());
    settings_ = Dict{{"Enable", true},
                     {"EnableArea", true},
                     {"EnableAvatar", true},
                     {"SMSSelectGroup", true},
                     {"MyInfo", 1}};
  }

  struct Line {
    bool fromMe;
    std::string text;
    bool read;
  };
  // Conversations newest first.
  void writeMessages(
      const std::vector<std::pair<std::string, std::vector<Line>>>& chats) {
    writeDeviceBytes(messages_schema::kMessagesDbPath, "");  // a new database
    std::string sql = std::string("BEGIN;") + messages_schema::kSchemaSql;
    int64_t message = 0;
    for (size_t i = 0; i < chats.size(); ++i) {
      const std::string n = std::to_string(i + 1);
      sql += "INSERT INTO handle (ROWID,id,service) VALUES (" + n + ",'" +
             chats[i].first +
             "','SMS');INSERT INTO chat (ROWID,guid,chat_identifier) VALUES (" +
             n + ",'c" + n + "','" + chats[i].first +
             "');INSERT INTO chat_handle_join VALUES (" + n + "," + n + ");";
      for (const Line& l : chats[i].second) {
        const std::string m = std::to_string(++message);
        const std::string date = std::to_string(438170400 - 3600 * i + message);
        sql +=
            "INSERT INTO message "
            "(ROWID,guid,text,handle_id,service,date,is_from_me,"
            "is_read) VALUES (" +
            m + ",'m" + m + "','" + l.text + "'," + n + ",'SMS'," + date + "," +
            (l.fromMe ? "1" : "0") + "," + (l.read ? "1" : "0") +
            ");INSERT INTO chat_message_join VALUES (" + n + "," + m + ");";
      }
    }
    execSql(devicePath(messages_schema::kMessagesDbPath), sql + "COMMIT;");
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
  // The group screen presented over the composer, if any.
  std::shared_ptr<ZVSMSGroupViewController> groupScreen() {
    auto composer = app_->composer();
    if (!composer || !composer->navigationController()) return nullptr;
    auto nav = std::dynamic_pointer_cast<ui::UINavigationController>(
        composer->navigationController()->presentedViewController());
    if (!nav) return nullptr;
    return std::dynamic_pointer_cast<ZVSMSGroupViewController>(
        nav->viewControllers().front());
  }
  std::shared_ptr<ZVSMSSelectContactsViewController> checklist() {
    return std::dynamic_pointer_cast<ZVSMSSelectContactsViewController>(
        app_->topController());
  }
  std::vector<std::string> composerAddresses() {
    std::vector<std::string> out;
    for (const auto& r : app_->composer()->toField->recipients)
      out.push_back(r->address);
    return out;
  }

  Dict settings_;
  platform::SimProcess* proc_ = nullptr;
  std::shared_ptr<hosts::MessagesApplication> app_;
};

}  // namespace zv::testing
