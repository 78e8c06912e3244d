// Fake Recents and Contacts hosts for the list controllers' tests, and a
// fixture that starts a controller on one: row cells
// are real table cells of the UI model with the host's labels, calls and
// persons are plain objects whose answers the test sets. The device has the
// China area database and the call-history databases of both generations.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "lists/contacts_controller.h"
#include "lists/contacts_host.h"
#include "lists/recents_controller.h"
#include "lists/recents_host.h"
#include "platform/db/platform_schema.h"
#include "platform/sim/device_presets.h"
#include "platform/ui/table_view.h"
#include "search/address_book.h"
#include "support/device_db.h"
#include "support/phone_process.h"

namespace zv::testing {

inline constexpr char kBeijingMobile[] = "13001000000";  // 北京市 中国联通
inline constexpr char kShanghaiMobile[] = "13002100000";  // 上海市 中国联通
inline constexpr char kUnknownNumber[] = "99999";

// A contact's record; its picture is a one-colour PNG.
class FakePerson : public ABPersonRecord {
 public:
  FakePerson(int32_t id, bool picture, ui::Pixel colour = {255, 0, 0, 255})
      : id_(id),
        png_(picture ? ui::Image::filled(80, 80, 1, colour).encodePng() : "") {}
  int32_t recordId() const override { return id_; }
  bool hasImageData() const override { return !png_.empty(); }
  std::string copyImageData(int) const override { return png_; }

 private:
  int32_t id_;
  std::string png_;
};

// A call as the Recents host keeps it.
struct FakeCall {
  Value occurrences{};  // Array of Dict, or null
  Value date{};
  std::string number{};
  Value recordId{};  // 8.x addressBookRecordId
  int32_t uid = -1;  // 7.x
  std::shared_ptr<const ABPersonRecord> person{};
};

// One Recents row's sub-views.
struct FakeRow {
  std::shared_ptr<ui::UILabel> name, label, count;
  std::shared_ptr<ui::UIImageView> icon;
  rt::Id call;
  int64_t grouped = 1;
  bool editing = false;
};

class FakeRecentsHost : public RecentsHost {
 public:
  // A row of the size of a 4.7-inch Recents row, with the host's views.
  std::shared_ptr<ui::UITableViewCell> makeCell(double nameSize = 17,
                                                double labelSize = 14) {
    auto cell = ui::UITableViewCell::make(ui::CellStyle::Default, "recents");
    cell->setFrame({{0, 0}, {375, 56}});
    auto label = [](double size, ui::Rect frame) {
      auto l = ui::make<ui::UILabel>();
      l->setFont({"Helvetica", size});
      l->setFrame(frame);
      return l;
    };
    FakeRow row;
    row.name = label(nameSize, {{15, 8}, {250, 22}});
    row.label = label(labelSize, {{15, 32}, {250, 18}});
    row.count = ui::make<ui::UILabel>();
    row.count->setFont({"Helvetica", nameSize});
    row.icon = ui::make<ui::UIImageView>();
    row.icon->setImage(std::make_shared<const ui::Image>(
        ui::Image::filled(32, 32, 2, {0, 0, 0, 255})));
    for (auto view : std::vector<std::shared_ptr<ui::UIView>>{
             row.name, row.label, row.count, row.icon})
      cell->contentView()->addSubview(view);
    rows_[cell.get()] = row;
    return cell;
  }
  FakeRow& row(const rt::Id& cell) { return rows_.at(cell.get()); }
  // Shows `call` in the row with the texts the host sets.
  void show(const rt::Id& cell, const rt::Id& call, std::string name,
            std::string label) {
    FakeRow& r = row(cell);
    r.call = call;
    r.name->setText(std::move(name));
    r.label->setText(std::move(label));
  }
  rt::Id makeCall(FakeCall data) {
    auto call = rt::create(callClass());
    calls_[call.get()] = std::move(data);
    return call;
  }
  FakeCall& callData(const rt::Id& call) { return calls_.at(call.get()); }
  void putRow(int64_t row, rt::Id cell) { table_[row] = std::move(cell); }
  int significantChanges = 0;

  rt::Id call(const rt::Id& cell) override {
    auto it = rows_.find(cell.get());
    return it == rows_.end() ? nullptr : it->second.call;
  }
  std::shared_ptr<ui::UIView> cellView(const rt::Id& cell,
                                       const std::string& key) override {
    auto it = rows_.find(cell.get());
    if (it == rows_.end()) return nullptr;
    if (key == "Name") return it->second.name;
    if (key == "Label") return it->second.label;
    if (key == "Count") return it->second.count;
    if (key == "CallTypeIcon") return it->second.icon;
    return nullptr;
  }
  int64_t count(const rt::Id& cell) override { return row(cell).grouped; }
  bool isEditing(const rt::Id& cell) override { return row(cell).editing; }
  bool isRecentsCell(const rt::Id& cell) override {
    return rows_.contains(cell.get());
  }
  Value callOccurrences(const rt::Id& call) override {
    return callData(call).occurrences;
  }
  Value date(const rt::Id& call) override { return callData(call).date; }
  std::string callerId(const rt::Id& call) override {
    return callData(call).number;
  }
  std::string destination(const rt::Id& call) override {
    return callData(call).number;
  }
  Value addressBookRecordId(const rt::Id& call) override {
    return callData(call).recordId;
  }
  int32_t uid(const rt::Id& call) override { return callData(call).uid; }
  std::shared_ptr<const ABPersonRecord> phoneBookRecord(
      const rt::Id& call) override {
    return callData(call).person;
  }
  std::shared_ptr<const ABPersonRecord> addressBookRecord(
      const rt::Id& call) override {
    return callData(call).person;
  }
  rt::Id cellForRow(const rt::Id&, int64_t row) override {
    auto it = table_.find(row);
    return it == table_.end() ? nullptr : it->second;
  }
  void callHistorySignificantChangeNotification(const rt::Id&) override {
    ++significantChanges;
  }

 private:
  static rt::Class* callClass() { return rt::registerClass("FakeRecentCall"); }
  std::map<const rt::Object*, FakeRow> rows_;
  std::map<const rt::Object*, FakeCall> calls_;
  std::map<int64_t, rt::Id> table_;
};

// A contacts-list cell's person and name view, or a card's phone cell.
struct FakeListCell {
  bool hasPerson = true;
  std::optional<std::string> name{};
  std::shared_ptr<const ABPersonRecord> person{};
  std::shared_ptr<ui::UIView> nameView{};
  std::shared_ptr<ui::UILabel> nameLabel{};
};

class FakeContactsHost : public ContactsHost {
 public:
  // A card's phone cell: label and value.
  rt::Id makePhoneCell(std::string label, std::string value) {
    auto cell = rt::create(rt::registerClass("FakePhoneNumberCell"));
    auto text = [](std::string t) {
      auto l = ui::make<ui::UILabel>();
      l->setText(std::move(t));
      return l;
    };
    phones_[cell.get()] = {text(std::move(label)), text(std::move(value))};
    return cell;
  }
  std::shared_ptr<ui::UILabel> label(const rt::Id& cell) {
    return phones_.at(cell.get()).first;
  }
  // A list cell with a name view (as before 8.0).
  std::shared_ptr<ui::UITableViewCell> makeListCell(FakeListCell data,
                                                    double nameSize = 17) {
    auto cell = ui::UITableViewCell::make(ui::CellStyle::Default, "member");
    cell->setFrame({{0, 0}, {320, 44}});
    data.nameView = ui::make<ui::UIView>();
    data.nameLabel = ui::make<ui::UILabel>();
    data.nameLabel->setFont({"Helvetica", nameSize});
    data.nameLabel->setText(data.name.value_or(""));
    data.nameView->addSubview(data.nameLabel);
    cell->contentView()->addSubview(data.nameView);
    lists_[cell.get()] = std::move(data);
    return cell;
  }
  FakeListCell& listCell(const rt::Id& cell) { return lists_.at(cell.get()); }
  void showContact(const rt::Id& viewController, std::optional<int32_t> id) {
    cards_[viewController.get()] = id;
  }
  std::map<const rt::Object*, int> separatorStyles;

  std::shared_ptr<ui::UILabel> labelLabel(const rt::Id& cell) override {
    auto it = phones_.find(cell.get());
    return it == phones_.end() ? nullptr : it->second.first;
  }
  std::shared_ptr<ui::UILabel> valueLabel(const rt::Id& cell) override {
    auto it = phones_.find(cell.get());
    return it == phones_.end() ? nullptr : it->second.second;
  }
  std::optional<int32_t> contactRecordId(const rt::Id& vc) override {
    auto it = cards_.find(vc.get());
    return it == cards_.end() ? std::nullopt : it->second;
  }
  bool hasPerson(const rt::Id& cell) override {
    auto it = lists_.find(cell.get());
    return it != lists_.end() && it->second.hasPerson;
  }
  std::optional<std::string> personName(const rt::Id& cell) override {
    return listCell(cell).name;
  }
  std::shared_ptr<const ABPersonRecord> personRecord(
      const rt::Id& cell) override {
    return listCell(cell).person;
  }
  std::shared_ptr<ui::UIView> contactNameView(const rt::Id& cell) override {
    return listCell(cell).nameView;
  }
  std::shared_ptr<ui::UILabel> nameLabel(const rt::Id& cell) override {
    return listCell(cell).nameLabel;
  }
  void setSeparatorStyle(const rt::Id& tableView, int style) override {
    separatorStyles[tableView.get()] = style;
  }

 private:
  std::map<const rt::Object*, std::pair<std::shared_ptr<ui::UILabel>,
                                        std::shared_ptr<ui::UILabel>>>
      phones_;
  std::map<const rt::Object*, FakeListCell> lists_;
  std::map<const rt::Object*, std::optional<int32_t>> cards_;
};

class ListsTest : public PhoneProcessTest {
 protected:
  ListsTest() {
    platform_schema::createDatabase(
        root_ + platform_schema::kCallHistoryStorePath,
        platform_schema::Database::kCallHistoryStore);
    platform_schema::createDatabase(root_ + platform_schema::kCallHistoryDbPath,
                                    platform_schema::Database::kCallHistoryDb);
    testing::execSql(root_ + platform_schema::kCallHistoryStorePath,
                     platform_schema::callRecordTableSql("ZVZCALLRECORD"));
    writeDeviceFile(ZVAddressBook::kNullAvatarPath,
                    ui::Image::filled(60, 60, 1, kPlaceholder).encodePng());
  }

  // The Phone process at `version` on a phone with a `screen`-inch screen
  // with `settings`.
  platform::SimProcess& start(const Dict& settings, const char* version = "8.1",
                              const char* screen = "4.7") {
    auto facts = platform::simulatedDevice(version, screen);
    EXPECT_TRUE(facts) << "no phone has a " << screen << "-inch screen";
    return launch(settings, facts.value_or(platform::DeviceFacts{}));
  }

  // Ring seconds stored for call dates (keys as the store formats them).
  void writeRingDurations(const Dict& durations) {
    writePlist("/var/mobile/Library/Preferences/zorvel.missed.plist",
               durations);
  }

  static constexpr ui::Pixel kPlaceholder{128, 128, 128, 255};
};

// The Phone process with a list controller (ZVRecentsController,
// ZVContactsController) on a fake host.
template <typename Controller, typename Host>
class ListControllerTest : public ListsTest {
 protected:
  void begin(const Dict& settings, const char* version = "8.1",
             const char* screen = "4.7") {
    proc_ = &start(settings, version, screen);
    proc_->run([&] {
      controller_ = Controller::sharedInstance();
      controller_->setHost(host_);
    });
  }
  template <typename F>
  auto run(F&& f) {
    return proc_->run(std::forward<F>(f));
  }

  std::shared_ptr<Host> host_ = std::make_shared<Host>();
  platform::SimProcess* proc_ = nullptr;
  std::shared_ptr<Controller> controller_;
};
using RecentsControllerTest =
    ListControllerTest<ZVRecentsController, FakeRecentsHost>;

}  // namespace zv::testing
