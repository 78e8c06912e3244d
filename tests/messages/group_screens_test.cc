// The recipient-group screen and its checklist: sources from the address
// book and the saved-recipients file, saving and deleting lists, the
// checklist's limit and title, and a damaged saved-recipients file. (Done
// handing the chosen numbers to the composer is the Messages end-to-end
// test's.)
#include <filesystem>

#include "area/area_loader.h"
#include "messages/group_view_controller.h"
#include "messages/recipients_file.h"
#include "messages_fixture.h"

namespace zv::testing {
namespace {

using Group = ZVSMSGroupViewController;
using Checklist = ZVSMSSelectContactsViewController;

const std::vector<SMSRecipient> kTwo{{"13800138000", "Li Lei", "mobile"},
                                     {"10086", "", ""}};

Value list(std::initializer_list<SMSRecipient> recipients) {
  return recipients_file::listValue(recipients);
}

class GroupScreensTest : public MessagesTest {
 protected:
  GroupScreensTest() {
    writeCheckImages();
    // Wei (mobile, home), Anna (work), Nobody (no number); the groups
    // Family {Wei}, one without a name, Work {Anna, Wei}.
    const std::string book = root_ + platform_schema::kAddressBookPath;
    EXPECT_TRUE(platform_schema::createDatabase(
        book, platform_schema::Database::kAddressBook));
    execSql(book, R"(BEGIN;
INSERT INTO ABPerson (ROWID, First, Last)
  VALUES (1, 'Wei', 'Zhang'), (2, 'Anna', 'Smith'), (3, 'Nobody', '');
INSERT INTO ABMultiValueLabel (ROWID, value)
  VALUES (1, '_$!<Mobile>!$_'), (2, '_$!<Home>!$_'), (3, '_$!<Work>!$_');
INSERT INTO ABMultiValue (UID, record_id, property, identifier, label, value)
  VALUES (1, 1, 3, 1, 1, '13912345678'), (2, 1, 3, 2, 2, '010 6552 9988'),
         (3, 2, 3, 3, 3, '+44 20 7946 0000');
INSERT INTO ABGroup (ROWID, Name) VALUES (1, 'Family'), (2, ''), (3, 'Work');
INSERT INTO ABGroupMembers (group_id, member_type, member_id)
  VALUES (1, 0, 1), (3, 0, 2), (3, 0, 1);
COMMIT;)");
  }
  // A presented group screen in its navigation controller.
  std::shared_ptr<Group> open(std::vector<SMSRecipient> recipients) {
    auto group = Group::initWithRecipients(std::move(recipients));
    nav_ = ui::UINavigationController::make(group);
    presenter_ = ui::make<ui::UIViewController>();
    presenter_->presentViewController(nav_, true);
    group->tableView()->reloadData();
    return group;
  }
  // Every row the table shows: "text|detail", sections apart by "/".
  static std::string rows(const std::shared_ptr<Group>& g) {
    std::string out;
    auto& table = *g->tableView();
    for (size_t s = 0; s < g->numberOfSectionsInTableView(table); ++s) {
      out += s ? " / " : "";
      for (size_t r = 0; r < g->numberOfRowsInSection(table, s); ++r) {
        auto cell = g->visibleCell({s, r});
        out += (r ? ", " : "") + cell->textLabel()->text() + "|" +
               cell->detailTextLabel()->text();
      }
    }
    return out;
  }
  std::shared_ptr<Checklist> checklist() {
    return std::dynamic_pointer_cast<Checklist>(nav_->topViewController());
  }
  void pressSave(const std::string& name, int button = 1) {
    auto alert = process_->openAlert();
    ASSERT_NE(alert, nullptr);
    alert->inputText = name;
    process_->pressAlertButton(button);
  }

  std::shared_ptr<ui::UINavigationController> nav_;
  std::shared_ptr<ui::UIViewController> presenter_;
};

TEST_F(GroupScreensTest, ThreeSectionsFromAddressBookAndSavedLists) {
  ASSERT_TRUE(plist::writeFile(
      root_ + kRecipientsFile,
      Value(Dict{
          {"Team", list({{"1", "A", "x"}, {"2", "B", "y"}, {"3", "C", "z"}})},
          {"Band", list({{"4", "D", "w"}})}})));
  launchMessages({}).run([&] {
    auto g = open(kTwo);
    auto& table = *g->tableView();
    EXPECT_EQ(g->style(), ui::TableViewStyle::Grouped);
    EXPECT_EQ(rows(g),
              "All Contacts|, Family|, |, Work| / Band|1, Team|3 / "
              "Save Recipients  (2)|");
    EXPECT_EQ(g->addressBookCount(), 3);
    auto cell = g->visibleCell({0, 1});
    EXPECT_EQ(cell->reuseIdentifier(), "GroupCell");
    EXPECT_EQ(cell->style(), ui::CellStyle::Value1);
    EXPECT_EQ(cell->accessoryType, ui::CellAccessoryType::DisclosureIndicator);
    auto button = g->visibleCell({2, 0});
    EXPECT_EQ(button->reuseIdentifier(), "ButtonCell");
    EXPECT_EQ(button->textLabel()->textColor(), (ui::Color{0, 0.478, 1, 1}));
    EXPECT_EQ(button->textLabel()->textAlignment(), ui::TextAlignment::Center);
    // Saved lists can be deleted, nothing else.
    EXPECT_TRUE(g->canEditRowAtIndexPath(table, {1, 0}));
    EXPECT_FALSE(g->canEditRowAtIndexPath(table, {0, 0}));
    EXPECT_FALSE(g->commitDelete({0, 1}));
    EXPECT_EQ(g->navigationItem()->leftBarButtonItem->title, "Cancel");
    EXPECT_EQ(g->navigationItem()->rightBarButtonItem->title, "Edit");
    g->navigationItem()->rightBarButtonItem->press();
    EXPECT_TRUE(g->isEditing());
    EXPECT_EQ(g->navigationItem()->rightBarButtonItem->title, "Done");
    g->navigationItem()->leftBarButtonItem->press();
    EXPECT_EQ(presenter_->presentedViewController(), nullptr);
  });
}

TEST_F(GroupScreensTest, SourcesOpenAChecklistOfTheirNumbers) {
  launchMessages({{"EnableArea", Value(true)}}).run([&] {
    auto g = open({});
    ASSERT_TRUE(g->tapRow({0, 3}));  // Work: Anna, then Wei's two numbers
    auto c = checklist();
    ASSERT_NE(c, nullptr);
    EXPECT_EQ(c->title, "Work (0/50)");
    EXPECT_EQ(c->list(), (std::vector<Checklist::Entry>{
                             {"+44 20 7946 0000", "Anna Smith", "work"},
                             {"13912345678", "Wei Zhang", "mobile"},
                             {"010 6552 9988", "Wei Zhang", "home"}}));
    auto cell = c->visibleCell({0, 1});
    ASSERT_NE(cell, nullptr);
    EXPECT_EQ(cell->textLabel()->text(), "Wei Zhang");
    const std::string area = ZVAreaLoader::sharedInstance()
                                 ->getArea("13912345678", true, false)
                                 .value_or("");
    ASSERT_FALSE(area.empty());
    EXPECT_EQ(cell->detailTextLabel()->text(), "mobile 13912345678 " + area);
    EXPECT_EQ(cell->imageView()->image(), c->notcheckedImage());
    ASSERT_NE(c->notcheckedImage(), nullptr);

    nav_->popViewControllerAnimated(true);
    ASSERT_TRUE(g->tapRow({0, 0}));
    EXPECT_EQ(checklist()->title, "All Contacts (0/50)");
    EXPECT_EQ(checklist()->list().size(), 3u);  // Nobody has no number
  });
  // Without an address book only "All Contacts" shows, and it is empty.
  std::filesystem::remove(root_ + platform_schema::kAddressBookPath);
  launchMessages({}).run([&] {
    auto g = open(kTwo);
    EXPECT_EQ(rows(g), "All Contacts| /  / Save Recipients  (2)|");
    ASSERT_TRUE(g->tapRow({0, 0}));
    EXPECT_TRUE(checklist()->list().empty());
  });
}

TEST_F(GroupScreensTest, ChecklistTogglesAndRefusesTheFiftyFirst) {
  launchMessages({}).run([&] {
    std::vector<Checklist::Entry> entries;
    for (int i = 0; i < 52; ++i)
      entries.push_back(
          {"1390000" + std::to_string(1000 + i), "P" + std::to_string(i), ""});
    SMSNumberSelection none;
    auto c = Checklist::initWithList(entries, none);
    c->titleName = "Many";
    auto nav = ui::UINavigationController::make(c);
    c->viewWillAppear(false);
    c->tableView()->reloadData();
    ASSERT_TRUE(c->tapRow({0, 0}));
    EXPECT_EQ(c->title, "Many (1/50)");
    EXPECT_EQ(c->visibleCell({0, 0})->imageView()->image(), c->checkedImage());
    ASSERT_TRUE(c->tapRow({0, 0}));
    EXPECT_EQ(c->title, "Many (0/50)");
    EXPECT_EQ(c->visibleCell({0, 0})->imageView()->image(),
              c->notcheckedImage());
    for (size_t r = 0; r < 50; ++r) c->tapRow({0, r});
    EXPECT_EQ(c->title, "Many (50/50)");
    ASSERT_TRUE(c->tapRow({0, 50}));
    EXPECT_EQ(c->selects().size(), 50u);
    EXPECT_FALSE(c->selects().contains(entries[50][0]));
    EXPECT_EQ(c->visibleCell({0, 50})->imageView()->image(),
              c->notcheckedImage());
    EXPECT_EQ(c->title, "Many (50/50)");
    EXPECT_EQ(c->deselections().size(), 53u);  // every tap deselects
    // Unchecking one makes room again.
    c->tapRow({0, 3});
    c->tapRow({0, 51});
    EXPECT_TRUE(c->selects().contains(entries[51][0]));
  });
}

TEST_F(GroupScreensTest, SavingReplacesByNameAndDeletingKeepsOtherLists) {
  ASSERT_TRUE(plist::writeFile(root_ + kRecipientsFile,
                               Value(Dict{{"Team", list({{"1", "A", "x"}})}})));
  launchMessages({}).run([&] {
    auto g = open(kTwo);
    ASSERT_TRUE(g->tapRow({2, 0}));
    auto alert = process_->openAlert();
    ASSERT_NE(alert, nullptr);
    EXPECT_EQ(alert->title, "Save Recipients");
    EXPECT_EQ(alert->tag, 10086);
    EXPECT_TRUE(alert->textInput);
    EXPECT_EQ(alert->buttons(), (std::vector<std::string>{"Cancel", "Save"}));
    // Cancel, and Save with no name, change nothing.
    pressSave("Ignored", 0);
    g->tapRow({2, 0});
    pressSave("");
    EXPECT_TRUE(g->hasRecipients());
    EXPECT_EQ(recipientsFile()->size(), 1u);

    g->tapRow({2, 0});
    pressSave("Team");
    auto file = recipientsFile();
    ASSERT_TRUE(file);
    EXPECT_EQ(*file, (Dict{{"Team", recipients_file::listValue(kTwo)}}));
    EXPECT_FALSE(g->hasRecipients());
    EXPECT_EQ(rows(g),
              "All Contacts|, Family|, |, Work| / Team|2 / Save Recipients|");
    auto button = g->visibleCell({2, 0});
    EXPECT_EQ(button->selectionStyle, ui::CellSelectionStyle::None);
    // The recipients are gone: the button does nothing now.
    const size_t shown = process_->alerts().size();
    g->tapRow({2, 0});
    EXPECT_EQ(process_->alerts().size(), shown);

    // Deleting rewrites the file without the list; a list another process
    // added since the screen opened survives.
    ASSERT_TRUE(plist::writeFile(root_ + kRecipientsFile,
                                 Value(Dict{{"Team", list({{"1", "", ""}})},
                                            {"C", list({{"3", "", ""}})}})));
    ASSERT_TRUE(g->commitDelete({1, 0}));
    EXPECT_EQ(*recipientsFile(), (Dict{{"C", list({{"3", "", ""}})}}));
    ASSERT_EQ(g->deletions().size(), 1u);
    EXPECT_EQ(g->deletions()[0].animation, ui::RowAnimation::Automatic);
    EXPECT_EQ(g->deletions()[0].paths, (std::vector<ui::IndexPath>{{1, 0}}));
    EXPECT_EQ(rows(g),
              "All Contacts|, Family|, |, Work| / C|1 / Save Recipients|");
  });
}

TEST_F(GroupScreensTest, DamagedFilesReadAsEmptyAndOtherShapesAreKept) {
  const std::string good =
      plist::toXml(Value(Dict{{"Good", list({{"1", "A", "x"}})}}));
  const std::vector<std::pair<std::string, std::string>> damaged{
      {"missing", ""},
      {"truncated", good.substr(0, good.size() / 2)},
      {"garbage", std::string("\x00\xff\x13\x37garbage\x01", 12)},
      {"not a dictionary", plist::toXml(Value(Array{Value("x")}))},
  };
  for (const auto& [what, bytes] : damaged) {
    SCOPED_TRACE(what);
    std::filesystem::remove(root_ + kRecipientsFile);
    if (what != "missing") writeDeviceFile(kRecipientsFile, bytes);
    launchMessages({}).run([&] {
      auto g = open(kTwo);
      EXPECT_TRUE(g->savedRecipientsNames().empty());
      g->tapRow({2, 0});
      pressSave("New");
      EXPECT_EQ(*recipientsFile(),
                (Dict{{"New", recipients_file::listValue(kTwo)}}));
    });
  }

  // Lists of other shapes (written by another version, or by hand) are
  // shown as well as they can be and written back exactly as read.
  const Dict others{
      {"Good", list({{"1", "A", "x"}})},
      {"Text", Value("not a list")},
      {"Empty", Value(Array{})},
      {"Numbers", Value(Array{Value(Array{Value(1), Value(2), Value(3)})})},
      {"Short", Value(Array{Value(Array{Value("1"), Value("A")})})},
      {"Mixed",
       Value(Array{
           Value(Array{Value("2"), Value("B"), Value("y")}), Value("stray"),
           Value(Array{Value("3"), Value("C"), Value("z"), Value("extra")})})}};
  ASSERT_TRUE(plist::writeFile(root_ + kRecipientsFile, Value(others)));
  launchMessages({}).run([&] {
    auto g = open(kTwo);
    EXPECT_EQ(g->savedRecipientsNames(),
              (std::vector<std::string>{"Empty", "Good", "Mixed", "Numbers",
                                        "Short", "Text"}));
    EXPECT_EQ(g->visibleCell({1, 2})->detailTextLabel()->text(), "3");
    g->tapRow({1, 2});
    EXPECT_EQ(checklist()->list().size(), 3u);
    nav_->popViewControllerAnimated(false);
    g->tapRow({2, 0});
    pressSave("New");
    Dict expected = others;
    expected["New"] = recipients_file::listValue(kTwo);
    EXPECT_EQ(*recipientsFile(), expected);
    ASSERT_TRUE(g->commitDelete({1, 0}));
    expected.erase("Empty");
    EXPECT_EQ(*recipientsFile(), expected);
  });
}

TEST_F(GroupScreensTest, ListsAWriteCannotKeepAreNeverLost) {
  // Binary files can hold a NUL byte in a text (found by fuzzing: "138\0...")
  // or in a list's name, which the written file cannot: they read whole,
  // and a save that would have to drop them is refused and said so. So is
  // one on a device that cannot write (here, a folder in the file's place).
  std::string nulName =
      readFile(ZV_SOURCE_DIR "/fuzz/corpus/recipients/binary");
  const size_t at = nulName.find("Work");
  ASSERT_NE(at, std::string::npos);
  nulName[at + 2] = '\0';
  const std::vector<std::pair<std::string, std::string>> cases{
      {"text with a NUL",
       readFile(ZV_SOURCE_DIR "/fuzz/corpus/recipients/text_with_nul")},
      {"name with a NUL", nulName},
      {"not writable", ""},
  };
  for (const auto& c : cases) {
    // Plain names: clang 14 lambdas cannot capture structured bindings.
    const std::string& what = c.first;
    const std::string& bytes = c.second;
    SCOPED_TRACE(what);
    std::filesystem::remove_all(root_ + kRecipientsFile);
    if (bytes.empty())
      std::filesystem::create_directories(root_ + kRecipientsFile);
    else
      writeDeviceFile(kRecipientsFile, bytes);
    const auto before = plist::readFile(root_ + kRecipientsFile);
    EXPECT_EQ(before.has_value(), !bytes.empty());
    launchMessages({}).run([&] {
      auto g = open(kTwo);
      EXPECT_EQ(g->savedRecipientsNames().empty(), bytes.empty());
      g->tapRow({2, 0});
      pressSave("New");
      auto alert = process_->openAlert();
      ASSERT_NE(alert, nullptr);
      EXPECT_EQ(alert->message, Group::kWriteFailedMessage);
      process_->pressAlertButton(0);
      // Nothing changed, nothing left behind, and the recipients can be
      // saved again.
      EXPECT_EQ(plist::readFile(root_ + kRecipientsFile), before);
      EXPECT_TRUE(g->hasRecipients());
      size_t files = 0;
      for (const auto& e : std::filesystem::directory_iterator(
               std::filesystem::path(root_ + kRecipientsFile).parent_path()))
        files +=
            e.path().filename().string().rfind("zorvel.recipients", 0) == 0;
      EXPECT_EQ(files, 1u);
      // Deleting another list would have to drop the NUL name too.
      if (what == "name with a NUL") {
        ASSERT_TRUE(g->commitDelete({1, 0}));
        EXPECT_TRUE(g->deletions().empty());
        EXPECT_EQ(plist::readFile(root_ + kRecipientsFile), before);
      }
    });
  }
}

}  // namespace
}  // namespace zv::testing
