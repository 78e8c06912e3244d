// Fake Recents and Contacts hosts (real table cells with the host's labels;
// a Recents row is its own call object) and a fixture that starts a list
// controller on one, on a device with the China area database and the
// call-history databases of both generations.
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

using Id = rt::Id;
using Person = std::shared_ptr<const ABPersonRecord>;
using Label = std::shared_ptr<ui::UILabel>;

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
  Person person{};
};

// One Recents row: its sub-views and the call it shows.
struct FakeRow {
  Label name, label, count;
  std::shared_ptr<ui::UIImageView> icon;
  std::optional<FakeCall> call;
  int64_t grouped = 1;
};

inline Label fakeLabel(double size, ui::Rect frame, std::string text = "") {
  auto l = ui::make<ui::UILabel>();
  l->setFont({"Helvetica", size});
  l->setFrame(frame);
  l->setText(std::move(text));
  return l;
}

class FakeRecentsHost : public RecentsHost {
 public:
  // A row of the size of a 4.7-inch Recents row, with the host's views.
  std::shared_ptr<ui::UITableViewCell> makeCell(double nameSize = 17,
                                                double labelSize = 14) {
    auto cell = ui::UITableViewCell::make(ui::CellStyle::Default, "recents");
    cell->setFrame({{0, 0}, {375, 56}});
    FakeRow row{.name = fakeLabel(nameSize, {{15, 8}, {250, 22}}),
                .label = fakeLabel(labelSize, {{15, 32}, {250, 18}}),
                .count = fakeLabel(nameSize, {}),
                .icon = ui::make<ui::UIImageView>(),
                .call = {}};
    row.icon->setImage(std::make_shared<const ui::Image>(
        ui::Image::filled(32, 32, 2, {0, 0, 0, 255})));
    for (auto view : std::vector<std::shared_ptr<ui::UIView>>{
             row.name, row.label, row.count, row.icon})
      cell->contentView()->addSubview(view);
    rows_[cell.get()] = row;
    return cell;
  }
  FakeRow& row(const Id& cell) { return rows_.at(cell.get()); }
  // Shows `call` in the row with the texts the host sets.
  void show(const Id& cell, FakeCall call, std::string name,
            std::string label) {
    FakeRow& r = row(cell);
    r.call = std::move(call);
    r.name->setText(std::move(name));
    r.label->setText(std::move(label));
  }
  std::map<int64_t, Id> table;  // the rows on screen
  int significantChanges = 0;

  Id call(const Id& c) override {
    return isRecentsCell(c) && row(c).call ? c : nullptr;
  }
  std::shared_ptr<ui::UIView> cellView(const Id& c,
                                       const std::string& key) override {
    if (!isRecentsCell(c)) return nullptr;
    FakeRow& r = row(c);
    if (key == "Name") return r.name;
    if (key == "Label") return r.label;
    if (key == "Count") return r.count;
    return key == "CallTypeIcon" ? r.icon : nullptr;
  }
  int64_t count(const Id& c) override { return row(c).grouped; }
  bool isEditing(const Id&) override { return false; }  // the e2e test's
  bool isRecentsCell(const Id& c) override { return rows_.contains(c.get()); }
  Value callOccurrences(const Id& c) override { return data(c).occurrences; }
  Value date(const Id& c) override { return data(c).date; }
  std::string callerId(const Id& c) override { return data(c).number; }
  std::string destination(const Id& c) override { return data(c).number; }
  Value addressBookRecordId(const Id& c) override { return data(c).recordId; }
  int32_t uid(const Id& c) override { return data(c).uid; }
  Person phoneBookRecord(const Id& c) override { return data(c).person; }
  Person addressBookRecord(const Id& c) override { return data(c).person; }
  Id cellForRow(const Id&, int64_t row) override { return table[row]; }
  void callHistorySignificantChangeNotification(const Id&) override {
    ++significantChanges;
  }

 private:
  FakeCall& data(const Id& call) { return *row(call).call; }
  std::map<const rt::Object*, FakeRow> rows_;
};

// A contacts-list cell's person and name view.
struct FakeListCell {
  bool hasPerson = true;
  std::optional<std::string> name{};
  Person person{};
  std::shared_ptr<ui::UIView> nameView{};
  Label nameLabel{};
};

class FakeContactsHost : public ContactsHost {
 public:
  // A card's phone cell: label and value.
  Id makePhoneCell(std::string label, std::string value) {
    auto cell = rt::create(rt::registerClass("FakePhoneNumberCell"));
    phones_[cell.get()] = {fakeLabel(17, {}, std::move(label)),
                           fakeLabel(17, {}, std::move(value))};
    return cell;
  }
  // A list cell with a name view (as before 8.0).
  std::shared_ptr<ui::UITableViewCell> makeListCell(FakeListCell data,
                                                    double nameSize = 17) {
    auto cell = ui::UITableViewCell::make(ui::CellStyle::Default, "member");
    cell->setFrame({{0, 0}, {320, 44}});
    data.nameView = ui::make<ui::UIView>();
    data.nameLabel = fakeLabel(nameSize, {}, data.name.value_or(""));
    data.nameView->addSubview(data.nameLabel);
    cell->contentView()->addSubview(data.nameView);
    lists_[cell.get()] = std::move(data);
    return cell;
  }
  FakeListCell& listCell(const Id& cell) { return lists_.at(cell.get()); }
  std::map<const rt::Object*, std::optional<int32_t>> cards;  // by view
  std::map<const rt::Object*, int> separatorStyles;

  Label labelLabel(const Id& c) override { return phone(c).first; }
  Label valueLabel(const Id& c) override { return phone(c).second; }
  std::optional<int32_t> contactRecordId(const Id& vc) override {
    return cards[vc.get()];
  }
  bool hasPerson(const Id& c) override {
    return lists_.contains(c.get()) && listCell(c).hasPerson;
  }
  std::optional<std::string> personName(const Id& c) override {
    return listCell(c).name;
  }
  Person personRecord(const Id& c) override { return listCell(c).person; }
  std::shared_ptr<ui::UIView> contactNameView(const Id& c) override {
    return listCell(c).nameView;
  }
  Label nameLabel(const Id& c) override { return listCell(c).nameLabel; }
  void setSeparatorStyle(const Id& tableView, int style) override {
    separatorStyles[tableView.get()] = style;
  }

 private:
  std::pair<Label, Label> phone(const Id& c) { return phones_[c.get()]; }
  std::map<const rt::Object*, std::pair<Label, Label>> phones_;
  std::map<const rt::Object*, FakeListCell> lists_;
};

// The shared controller of its class, on `host`.
template <typename Controller, typename Host>
std::shared_ptr<Controller> controllerOn(const std::shared_ptr<Host>& host) {
  auto controller = Controller::sharedInstance();
  controller->setHost(host);
  return controller;
}

class ListsTest : public PhoneProcessTest {
 protected:
  ListsTest() {
    namespace ps = platform_schema;
    ps::createDatabase(root_ + ps::kCallHistoryStorePath,
                       ps::Database::kCallHistoryStore);
    ps::createDatabase(root_ + ps::kCallHistoryDbPath,
                       ps::Database::kCallHistoryDb);
    testing::execSql(root_ + ps::kCallHistoryStorePath,
                     ps::callRecordTableSql("ZVZCALLRECORD"));
    writeDeviceFile(ZVAddressBook::kNullAvatarPath,
                    ui::Image::filled(60, 60, 1, kPlaceholder).encodePng());
  }
  static constexpr ui::Pixel kPlaceholder{128, 128, 128, 255};
};

// A list controller on a fake host in the Phone process at `version` on a
// `screen`-inch phone.
template <typename Controller, typename Host>
class ListControllerTest : public ListsTest {
 protected:
  void begin(const Dict& settings, const char* version = "8.1",
             const char* screen = "4.7") {
    auto facts = platform::simulatedDevice(version, screen);
    ASSERT_TRUE(facts) << "no phone has a " << screen << "-inch screen";
    proc_ = &launch(settings, *facts);
    controller_ = run([&] { return controllerOn<Controller>(host_); });
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
