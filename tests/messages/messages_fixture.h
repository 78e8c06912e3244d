// A Messages process on a device with the China area database, a fake
// Messages host behind ZVSMSHost, and a helper that writes the check-mark
// images.
#pragma once

#include <map>

#include "messages/sms_controller.h"
#include "platform/db/platform_schema.h"
#include "platform/sim/device_presets.h"
#include "support/device_db.h"
#include "support/phone_process.h"

namespace zv::testing {

struct FakeRecord : ABPersonRecord {
  FakeRecord(int32_t id, bool image) : id(id), image(image) {}
  int32_t recordId() const override { return id; }
  bool hasImageData() const override { return image; }
  std::string copyImageData(int) const override { return ""; }
  int32_t id;
  bool image;
};

// A conversation of the fake host: its recipient and unread state.
struct FakeConversation : rt::Object {
  using rt::Object::Object;
  std::string address;
  std::shared_ptr<FakeRecord> record;
  bool unread = false, unreadi = false;
};

// A conversation-list cell with the host's labels, or a transcript cell.
struct FakeListCell {
  std::shared_ptr<ui::UITableViewCell> cell;
  std::shared_ptr<ui::UILabel> from, date, summary;
  std::shared_ptr<ui::UIImageView> unread;
  bool editing = false;
};
struct FakeMessageCell : rt::Object {
  using rt::Object::Object;
  int orientation = 0;
  bool wantsLayout = false;
  ui::ImagePtr contactImage;
  std::shared_ptr<ui::UIImageView> contactImageView =
      ui::make<ui::UIImageView>();
};
// The composer: a view controller with a recipient field.
struct FakeComposer : ui::UIViewController {
  using ui::UIViewController::UIViewController;
  bool newRecipient = true;
  int32_t record = -1;  // the transcript's recipient
};

class FakeSMSHost : public ZVSMSHost {
 public:
  FakeListCell& addListCell() {
    FakeListCell c;
    c.cell = ui::UITableViewCell::make(ui::CellStyle::Subtitle, "cell");
    c.cell->setFrame({{0, 0}, {320, 76}});
    auto add = [&](auto view, ui::Rect frame) {
      view->setFrame(frame);
      c.cell->contentView()->addSubview(view);
      return view;
    };
    c.from = add(ui::make<ui::UILabel>(), {{15, 10}, {200, 20}});
    c.date = add(ui::make<ui::UILabel>(), {{250, 10}, {60, 20}});
    c.summary = add(ui::make<ui::UILabel>(), {{15, 20}, {290, 40}});
    c.unread = add(ui::make<ui::UIImageView>(), {{3, 30}, {10, 10}});
    auto key = c.cell.get();
    return cells_[key] = std::move(c);
  }
  FakeListCell& parts(const rt::Id& cell) { return cells_.at(cell.get()); }

  using Id = rt::Id;
  using Label = std::shared_ptr<ui::UILabel>;
  using View = std::shared_ptr<ui::UIView>;
  std::shared_ptr<ui::UITableViewCell> listCell(const Id& cell) override {
    return std::dynamic_pointer_cast<ui::UITableViewCell>(cell);
  }
  Label fromLabel(const Id& c) override { return find(c).from; }
  Label dateLabel(const Id& c) override { return find(c).date; }
  Label summaryLabel(const Id& c) override { return find(c).summary; }
  View unreadIndicator(const Id& c) override { return find(c).unread; }
  bool isEditing(const Id& c) override { return find(c).editing; }

  std::string recipientAddress(const Id& v) override { return conv(v).address; }
  std::shared_ptr<const ABPersonRecord> recipientRecord(const Id& v) override {
    return conv(v).record;
  }
  bool hasUnreadMessages(const Id& v) override { return conv(v).unread; }
  bool hasUnreadiMessages(const Id& v) override { return conv(v).unreadi; }

  bool isMessageCell(const Id& c) override {
    return rt::as<FakeMessageCell>(c) != nullptr;
  }
  ui::ImagePtr contactImage(const Id& c) override {
    return msg(c).contactImage;
  }
  int orientation(const Id& c) override { return msg(c).orientation; }
  void setWantsContactImageLayout(const Id& c, bool w) override {
    msg(c).wantsLayout = w;
  }
  void setContactImage(const Id& c, ui::ImagePtr i) override {
    msg(c).contactImage = i;
  }
  View contactImageView(const Id& c) override {
    return msg(c).contactImageView;
  }
  int32_t transcriptRecordId(const Id& t) override {
    return composer(t).record;
  }

  bool isNewRecipient(const Id& t) override { return composer(t).newRecipient; }
  std::shared_ptr<ui::UINavigationItem> navigationItem(const Id& t) override {
    return composer(t).navigationItem();
  }
  std::shared_ptr<ui::UIViewController> presentingController(
      const Id& t) override {
    return std::dynamic_pointer_cast<ui::UIViewController>(t);
  }
  // Replacing the recipients is the Messages end-to-end test's.
  Id toField(const Id& t, bool) override { return t; }
  std::vector<SMSRecipient> recipients(const Id&) override { return {}; }
  void removeAllRecipients(const Id&, bool) override {}
  void addAddress(const Id&, const std::string&) override {}

 private:
  FakeListCell& find(const rt::Id& c) {
    static FakeListCell none;
    auto it = cells_.find(c.get());
    return it == cells_.end() ? none : it->second;
  }
  static FakeConversation& conv(const rt::Id& v) {
    return dynamic_cast<FakeConversation&>(*v);
  }
  static FakeMessageCell& msg(const rt::Id& c) {
    return dynamic_cast<FakeMessageCell&>(*c);
  }
  static FakeComposer& composer(const rt::Id& t) {
    return dynamic_cast<FakeComposer&>(*t);
  }
  std::map<const rt::Object*, FakeListCell> cells_;
};

// Screens: the 4-inch phone (pictures on) and the 4.7-inch one (off).
inline platform::DeviceFacts fourInch(std::string_view version = "8.1") {
  return *platform::simulatedDevice(version, "4");
}
inline platform::DeviceFacts fourPointSevenInch() {
  return platform::DeviceFacts{};
}

class MessagesTest : public PhoneProcessTest {
 protected:
  static constexpr const char* kRecipientsFile =
      "/var/mobile/Library/Preferences/zorvel.recipients.plist";

  platform::SimProcess& launchMessages(
      const Dict& settings, platform::DeviceFacts facts = fourInch()) {
    writePlist("/var/mobile/Library/Preferences/zorvel.plist", settings);
    auto& p = world_.launch("com.apple.MobileSMS", facts);
    process_ = &p;
    p.run([&] {
      host_ = std::make_shared<FakeSMSHost>();
      ZVSMSController::sharedInstance()->setHost(host_);
    });
    return p;
  }

  std::shared_ptr<FakeConversation> conversation(std::string address,
                                                 int32_t record = -1,
                                                 bool image = false) {
    auto v = rt::create<FakeConversation>(rt::registerClass("CKConversation"));
    v->address = std::move(address);
    if (record >= 0) v->record = std::make_shared<FakeRecord>(record, image);
    return v;
  }
  std::shared_ptr<FakeComposer> composer() {
    ui::uiClass("UIViewController");
    return rt::create<FakeComposer>(
        rt::registerClass("CKTranscriptController", "UIViewController"));
  }

  void writeCheckImages() {
    writeDeviceFile("/Library/Zorvel/checked.png",
                    ui::Image::filled(44, 44, 2, {0, 0, 255, 255}).encodePng());
    writeDeviceFile(
        "/Library/Zorvel/notchecked.png",
        ui::Image::filled(44, 44, 2, {200, 200, 200, 255}).encodePng());
  }
  std::optional<Dict> recipientsFile() {
    return plist::readDictionary(root_ + kRecipientsFile);
  }

  std::shared_ptr<FakeSMSHost> host_;
  platform::SimProcess* process_ = nullptr;
};

}  // namespace zv::testing
