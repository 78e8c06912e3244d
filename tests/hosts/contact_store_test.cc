// The contacts the simulated list and card screens show, read from the
// address-book databases: names in the user's order, phones with their
// stored labels, pictures.
#include "hosts/contacts/contact_store.h"

#include <gtest/gtest.h>

#include "platform/db/platform_schema.h"
#include "support/device_db.h"
#include "support/sim_fixture.h"

namespace zv::hosts {
namespace {

namespace schema = platform_schema;
using Names = std::vector<std::string>;

TEST(CompositeNameTest, ChineseNamesReadAsOneWord) {
  EXPECT_EQ(compositeName("Lei", "Li", "", false), "Lei Li");
  EXPECT_EQ(compositeName("Lei", "Li", "", true), "Li Lei");
  EXPECT_EQ(compositeName("磊", "李", "", true), "李磊");
  EXPECT_EQ(compositeName("磊", "李", "", false), "李磊");
  EXPECT_EQ(compositeName("", "李", "ACME", true), "李");
  EXPECT_EQ(compositeName("", "", "ACME", false), "ACME");
}

class ContactStoreTest : public testing::SimTest {
 protected:
  void SetUp() override {
    ASSERT_TRUE(schema::createDatabase(root_ + schema::kAddressBookPath,
                                       schema::Database::kAddressBook));
    ASSERT_TRUE(schema::createDatabase(root_ + schema::kAddressBookImagesPath,
                                       schema::Database::kAddressBookImages));
    testing::execSql(
        root_ + schema::kAddressBookPath,
        "INSERT INTO ABPerson (ROWID, First, Last) VALUES (1, 'Zoe', 'Adams');"
        "INSERT INTO ABPerson (ROWID, First, Last) VALUES (2, '磊', '李');"
        "INSERT INTO ABPerson (ROWID, Organization) VALUES (3, 'ACME');"
        "INSERT INTO ABPerson (ROWID) VALUES (4);"
        "INSERT INTO ABMultiValueLabel (ROWID, value) VALUES "
        "(1, '_$!<Mobile>!$_'), (2, 'Beach');"
        "INSERT INTO ABMultiValue (UID, record_id, property, identifier, "
        "label, value) VALUES (1, 2, 3, 0, 1, '13001000000'), "
        "(2, 2, 3, 1, 2, '02112345678'), (3, 2, 4, 2, NULL, 'a@b.c'), "
        "(4, 1, 3, 0, NULL, '10086')");
    testing::execSql(root_ + schema::kAddressBookImagesPath,
                     "INSERT INTO ABThumbnailImage (record_id, format, data) "
                     "VALUES (2, 0, x'89504E47'), (1, 0, x'')");
  }
};

TEST_F(ContactStoreTest, PersonsWithPhonesAndPictures) {
  platform::DeviceFacts facts;
  facts.nameOrderLastFirst = true;
  auto& proc = world_.launch("com.apple.MobileAddressBook", facts);
  auto contacts = proc.run([] { return loadContacts(); });
  auto names = [](const std::vector<Contact>& people) {
    std::vector<std::string> out;
    for (const auto& c : people) out.push_back(c.name);
    return out;
  };
  EXPECT_EQ(names(contacts), (Names{"ACME", "Adams Zoe", "李磊", ""}));
  ASSERT_EQ(contacts[2].phones.size(), 2u);
  EXPECT_EQ(contacts[2].phones[0].label + contacts[2].phones[1].label +
                contacts[1].phones[0].label,
            "_$!<Mobile>!$_Beach");
  EXPECT_TRUE(contacts[2].hasImage);
  EXPECT_FALSE(contacts[1].hasImage);  // an empty blob is no picture
  EXPECT_EQ(proc.run([] { return contactImageData(2); }), "\x89PNG");
  EXPECT_EQ(proc.run([] { return contactImageData(1); }), "");
  EXPECT_EQ(proc.run([] { return loadContact(3); })->organization, "ACME");
  EXPECT_FALSE(proc.run([] { return loadContact(9); }));
  // Only the owners of the numbers asked for, in the same order: by the
  // platform's rule (country code, trunk 0), never by an e-mail address.
  auto owners = proc.run([] {
    return loadContactsOwning({"+86 130 0100 0000", "10086", "a@b.c", "9"});
  });
  ASSERT_EQ(names(owners), (Names{"Adams Zoe", "李磊"}));
  EXPECT_TRUE(owners[1].hasImage);
  EXPECT_EQ(owners[1].phones.size(), 2u);
  EXPECT_TRUE(proc.run([] { return loadContactsOwning({}); }).empty());
}

}  // namespace
}  // namespace zv::hosts
