// Generated device images: the platform queries of the search engine run on
// them, they are deterministic, their contents look like a real phone's,
// and the Control Centre glyphs they install are templates.
#include "devicegen/device_image.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <list>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "platform/db/messages_schema.h"
#include "platform/db/platform_schema.h"
#include "platform/db/sqlite_db.h"
#include "platform/plist.h"
#include "platform/ui/image.h"
#include "support/device_files.h"
#include "support/sim_fixture.h"

namespace zv {
namespace {

namespace fs = std::filesystem;
namespace ps = platform_schema;

const std::string kTable =
    std::string(ZV_SOURCE_DIR) + "/data/table/PinYin.txt";

using testing::readFile;

using Row = std::vector<std::string>;  // NULL reads as "<null>"

// Runs one statement.
std::vector<Row> query(const std::string& file, const std::string& sql) {
  sql::Database db(file, sql::Database::Mode::kReadWrite);
  EXPECT_TRUE(db.ok()) << file;
  sql::Statement s(db, sql);
  if (!s.ok()) ADD_FAILURE() << sql << ": " << db.error();
  std::vector<Row> rows;
  while (s.step()) {
    Row row;
    // Blobs as their bytes, numbers as their text.
    for (int i = 0; i < s.columnCount(); ++i)
      row.emplace_back(s.isNull(i) ? "<null>" : std::string(s.blob(i)));
    rows.push_back(std::move(row));
  }
  EXPECT_TRUE(!s.ok() || s.done()) << sql << ": " << db.error();
  return rows;
}

// The first cell of the first row of `sql`.
std::string cell(const std::string& file, const std::string& sql) {
  auto rows = query(file, sql);
  return rows.empty() || rows[0].empty() ? "<none>" : rows[0][0];
}

class DeviceImageTest : public ::testing::Test {
 protected:
  std::string makeRoot() { return roots_.emplace_back().path(); }
  std::string create(const DeviceImageOptions& options,
                     DeviceImageSummary* summary = nullptr) {
    std::string root = makeRoot();
    DeviceImageSummary s = createDeviceImage(root, options);
    if (summary) *summary = s;
    return root;
  }
  // Each row: a FROM clause, and whether some records or none match it.
  using Matches = std::vector<std::pair<std::string, bool>>;
  static void expectMatches(const std::string& file, const Matches& rows) {
    for (const auto& [where, some] : rows)
      EXPECT_EQ(cell(file, "SELECT COUNT(*) FROM " + where) != "0", some)
          << where;
  }
  static ui::ImagePtr glyph(const std::string& root, const std::string& name) {
    return ui::Image::fromFile(root + "/Library/Zorvel/" + name + ".png", 2);
  }
  // Share of pixels with any coverage.
  static double coverage(const ui::Image& image) {
    int covered = 0;
    for (int y = 0; y < image.pixelHeight(); ++y)
      for (int x = 0; x < image.pixelWidth(); ++x)
        covered += image.pixel(x, y).a > 0;
    return double(covered) / (image.pixelWidth() * image.pixelHeight());
  }
  std::list<testing::TempRoot> roots_;
};

DeviceImageOptions options(int contacts, int calls, uint64_t seed) {
  DeviceImageOptions o;
  o.contacts = contacts;
  o.calls = calls;
  o.seed = seed;
  o.tableFile = kTable;
  return o;
}

// What the search engine and the call screens meet in a real phone's
// address book, as rows that some or no records match. (The search
// engine's own query finding every number is device_cli_test.cc's.)
TEST_F(DeviceImageTest, AddressBookHoldsWhatARealOneHolds) {
  DeviceImageSummary summary;
  const std::string book =
      create(options(150, 50, 7), &summary) + ps::kAddressBookPath;
  EXPECT_EQ(cell(book, "SELECT COUNT(*) FROM ABMultiValue WHERE property=3"),
            std::to_string(summary.phoneNumbers));
  EXPECT_EQ(cell(book, "SELECT value FROM ABMultiValueLabel WHERE ROWID=1"),
            ps::kLabelMobile);
  expectMatches(
      book,
      {
          {"ABMultiValue WHERE property=3 AND label IS NULL", true},
          {"ABMultiValue WHERE property=3 AND label NOT IN "
           "(SELECT ROWID FROM ABMultiValueLabel)",
           false},
          {"ABMultiValue WHERE property=3 AND value IS NULL", false},
          // E-mail addresses share the table and must not come back as numbers.
          {"ABMultiValue WHERE property=4", true},
          {"ABPerson WHERE First IS NOT NULL", true},
          {"ABPerson WHERE First IS NULL AND Last IS NULL AND "
           "Organization IS NOT NULL",
           true},
          // The owner's card, the record the default settings name.
          {"ABPerson WHERE ROWID=1 AND Organization IS NULL", false},
          // Birthdays: seconds since 2001 that read as numbers, at noon UTC.
          {"ABPerson WHERE Birthday IS NOT NULL", true},
          {"ABPerson WHERE Birthday IS NOT NULL AND "
           "(CAST(Birthday AS INTEGER) % 86400 + 86400) % 86400 != 43200",
           false},
      });
}

TEST_F(DeviceImageTest, PicturesDecodeAndTheFirstNonEmptyRowIsThePicture) {
  DeviceImageSummary summary;
  std::string root = create(options(400, 0, 3), &summary);
  std::string images = root + ps::kAddressBookImagesPath;
  // Each record's pictures in the order of their formats.
  std::map<std::string, std::vector<std::string>> pictures;
  for (const Row& r : query(images,
                            "SELECT record_id, data FROM ABThumbnailImage "
                            "ORDER BY record_id, format"))
    pictures[r[0]].push_back(r[1]);
  ASSERT_EQ(static_cast<int>(pictures.size()), summary.pictures);
  ASSERT_GT(summary.pictures, 20);
  int emptyFirst = 0, png = 0, jpeg = 0;
  for (const auto& [record, blobs] : pictures) {
    ASSERT_FALSE(blobs.empty());
    if (blobs[0].empty()) ++emptyFirst;
    const std::string& picture = blobs[0].empty() ? blobs.at(1) : blobs[0];
    (picture.compare(0, 4, "\x89PNG") == 0 ? png : jpeg)++;
    ui::ImagePtr image = ui::Image::decode(picture, 1);
    ASSERT_NE(image, nullptr) << "record " << record;
    EXPECT_EQ(image->size(), (platform::Size{120, 120}));
    // The initial is drawn in white over the gradient.
    const auto& px = image->rgba();
    bool white = false;
    for (size_t i = 0; i < px.size(); i += 4)
      white |= px[i] > 240 && px[i + 1] > 240 && px[i + 2] > 240;
    EXPECT_TRUE(white) << "record " << record;
  }
  EXPECT_GT(std::min({emptyFirst, png, jpeg}), 0);
  EXPECT_TRUE(pictures.count("1"));

  std::string avatar = readFile(root + "/Library/Zorvel/avatar.png");
  ui::ImagePtr own = ui::Image::decode(avatar, 1);
  ASSERT_NE(own, nullptr);
  EXPECT_EQ(own->pixelWidth(), own->pixelHeight());
}

TEST_F(DeviceImageTest, CallHistoryQueriesOfBothSystemVersions) {
  std::string root = create(options(80, 300, 11));
  std::string store = root + ps::kCallHistoryStorePath;
  std::string old = root + ps::kCallHistoryDbPath;

  auto recent = query(store,
                      "SELECT DISTINCT ZADDRESS FROM ZCALLRECORD WHERE "
                      "ZADDRESS!='' ORDER BY ZDATE DESC");
  auto recentOld = query(old,
                         "SELECT DISTINCT address FROM call WHERE address!='' "
                         "ORDER BY date DESC");
  ASSERT_GT(recent.size(), 20u);
  EXPECT_EQ(recent.size(), recentOld.size());
  // Withheld numbers are stored as empty text and filtered out above;
  // missed calls exist in both forms: never connected, incoming.
  expectMatches(store, {{"ZCALLRECORD WHERE ZADDRESS=''", true},
                        {"ZCALLRECORD WHERE ZDURATION=0 AND ZORIGINATED=0 AND "
                         "ZANSWERED=0",
                         true}});
  // Calls from contacts carry the contact's dialable number (below); the
  // others are strangers (id -1).
  expectMatches(old, {{"call WHERE duration=0 AND flags=4", true},
                      {"call WHERE id=-1", true}});

  auto newest = query(store,
                      "SELECT ZDURATION,ZREAD,ZDATE FROM ZCALLRECORD ORDER BY "
                      "Z_PK DESC LIMIT 1");
  auto latest = query(store, "SELECT MAX(ZDATE) FROM ZCALLRECORD");
  ASSERT_EQ(newest.size(), 1u);
  EXPECT_EQ(newest[0][2], latest[0][0]);  // the highest key is the newest
  auto newestOld = query(old,
                         "SELECT duration,flags,date FROM call ORDER BY ROWID "
                         "DESC LIMIT 1");
  ASSERT_EQ(newestOld.size(), 1u);
  EXPECT_EQ(std::stoll(newestOld[0][2]),
            static_cast<long long>(std::stod(newest[0][2]) +
                                   ps::kReferenceDateOffset));

  auto known = query(old, "SELECT DISTINCT id, address FROM call WHERE id>0");
  ASSERT_FALSE(known.empty());
  std::string book = root + ps::kAddressBookPath;
  for (const Row& r : known) {
    std::set<std::string> dialable;
    for (Row v : query(book,
                       "SELECT value FROM ABMultiValue WHERE property=3 "
                       "AND record_id=" +
                           r[0])) {
      std::erase_if(v[0],
                    [](char c) { return !std::strchr("0123456789#*+,;", c); });
      dialable.insert(v[0]);
    }
    EXPECT_TRUE(dialable.count(r[1])) << r[0] << " " << r[1];
  }
}

TEST_F(DeviceImageTest, SameSeedSameBytesOtherSeedOtherPeople) {
  std::string a = create(options(200, 100, 42));
  std::string b = create(options(200, 100, 42));
  std::string c = create(options(200, 100, 43));
  for (const char* path : {ps::kAddressBookPath, ps::kAddressBookImagesPath,
                           ps::kCallHistoryStorePath, ps::kCallHistoryDbPath,
                           "/Library/Zorvel/avatar.png",
                           "/var/mobile/Library/Preferences/zorvel.plist"}) {
    std::string bytes = readFile(a + path);
    ASSERT_FALSE(bytes.empty()) << path;
    EXPECT_EQ(bytes, readFile(b + path)) << path;
  }
  const std::string names =
      "SELECT First, Last, Organization FROM ABPerson ORDER BY ROWID";
  EXPECT_NE(query(a + ps::kAddressBookPath, names),
            query(c + ps::kAddressBookPath, names));
  const std::string calls = "SELECT address, date FROM call ORDER BY ROWID";
  EXPECT_NE(query(a + ps::kCallHistoryDbPath, calls),
            query(c + ps::kCallHistoryDbPath, calls));
}

TEST_F(DeviceImageTest, CountsInstalledDataAndBadInput) {
  DeviceImageSummary summary;
  DeviceImageOptions o = options(1234, 567, 9);
  o.areaFile = makeRoot() + "/area";
  std::ofstream(o.areaFile) << "area bytes";
  std::string root = create(o, &summary);
  EXPECT_EQ(std::make_pair(summary.contacts, summary.calls),
            std::make_pair(1234, 567));
  const std::string book = root + ps::kAddressBookPath;
  EXPECT_EQ(
      cell(book, "SELECT COUNT(*) FROM ABPerson") + " " +
          cell(root + ps::kCallHistoryStorePath,
               "SELECT COUNT(*) FROM ZCALLRECORD") +
          " " +
          cell(root + ps::kCallHistoryDbPath, "SELECT COUNT(*) FROM call"),
      "1234 567 567");
  // Deleted records leave gaps in the ids.
  EXPECT_GT(std::stoi(cell(book, "SELECT MAX(ROWID) FROM ABPerson")), 1234);
  EXPECT_EQ(readFile(root + "/Library/Zorvel/Table/PinYin.txt"),
            readFile(kTable));
  EXPECT_EQ(readFile(root + "/Library/Zorvel/Area/China"), "area bytes");
  auto settings = plist::readDictionary(
      root + "/var/mobile/Library/Preferences/zorvel.plist");
  ASSERT_TRUE(settings);
  EXPECT_TRUE(settings->at("Enable").boolValue());
  EXPECT_EQ(settings->at("MyInfo").intValue(), 1);

  // An empty book still gets a call history, all from strangers.
  std::string empty = create(options(0, 30, 1));
  EXPECT_EQ(cell(empty + ps::kCallHistoryDbPath,
                 "SELECT COUNT(*) FROM call WHERE id=-1"),
            "30");

  DeviceImageOptions noTable = options(5, 5, 1), noSettings = noTable;
  noTable.tableFile = "/nonexistent/PinYin.txt";
  noSettings.settingsFile = "/nonexistent/zorvel.plist";
  for (const auto& bad : {options(-1, 0, 1), noTable, noSettings})
    EXPECT_THROW(createDeviceImage(makeRoot(), bad), std::runtime_error);
}

TEST_F(DeviceImageTest, NumbersComeInMixedStylesFromRealPlans) {
  DevicePeople people = generateDevicePeople(600, 0, 17);
  std::map<std::string, int> styles;
  const std::regex mobile(R"((\+86|0086)?1[3-9]\d{9})");
  const std::regex fixedLine(
      R"((\+86|0)(10|2\d|[3-9]\d\d)[2-8]\d{6,7}(,\d{3})?)");
  const std::regex service(R"(1\d{4}|9\d{4}|[48]00\d{7})");
  const std::regex foreign(R"(\+(852|1|44)\d{7,10})");
  for (const DeviceContact& c : people.contacts) {
    EXPECT_FALSE(c.phones.empty()) << c.recordId;
    for (const DevicePhone& p : c.phones) {
      const std::string& d = p.dialable;
      EXPECT_TRUE(std::regex_match(d, mobile) ||
                  std::regex_match(d, fixedLine) ||
                  std::regex_match(d, service) || std::regex_match(d, foreign))
          << p.text;
      if (p.text.find("+86") == 0) styles["+86"]++;
      if (p.text.find("0086") == 0) styles["0086"]++;
      if (p.text.find(' ') != std::string::npos) styles["space"]++;
      if (p.text.find('-') != std::string::npos) styles["dash"]++;
      if (p.text.find('(') != std::string::npos) styles["bracket"]++;
      if (p.text.find(',') != std::string::npos) styles["extension"]++;
      if (p.text == d) styles["plain"]++;
      if (std::regex_match(d, fixedLine)) styles["fixed"]++;
      if (d.size() == 11 && d[0] == '1') styles["mobile"]++;
    }
  }
  EXPECT_EQ(styles.size(), 9u);  // every style above turns up

  // Chinese and Western names, and some two-character given names.
  int chinese = 0, western = 0, twoCharGiven = 0;
  for (const DeviceContact& c : people.contacts) {
    const std::string& name = c.first;
    if (name.empty()) continue;
    if (static_cast<unsigned char>(name[0]) >= 0x80) {
      ++chinese;
      twoCharGiven += !c.last.empty() && name.size() == 6;
    } else {
      ++western;
    }
  }
  EXPECT_GT(chinese, western);
  EXPECT_GT(western, 50);
  EXPECT_GT(twoCharGiven, 50);
}

TEST_F(DeviceImageTest, MessagesConversationsGroupsAndCheckMarks) {
  std::string root = create(options(80, 0, 1));
  const std::string sms = root + messages_schema::kMessagesDbPath;
  EXPECT_GE(std::stoi(cell(sms, "SELECT COUNT(*) FROM chat")), 8);
  // Every chat has one handle and at least one message; Chinese and Western
  // texts, sent and received, some unread.
  expectMatches(sms, {{"chat WHERE ROWID NOT IN (SELECT chat_id FROM "
                       "chat_message_join) OR ROWID NOT IN (SELECT chat_id "
                       "FROM chat_handle_join)",
                       false},
                      {"message WHERE text LIKE '%吃饭%'", true},
                      {"message WHERE text LIKE '%Friday%'", true},
                      {"message WHERE is_from_me=1", true},
                      {"message WHERE is_read=0 AND is_from_me=0", true}});

  const std::string book = root + ps::kAddressBookPath;
  auto sizes = query(book,
                     "SELECT COUNT(m.member_id) FROM ABGroup g LEFT JOIN "
                     "ABGroupMembers m ON m.group_id=g.ROWID GROUP BY g.ROWID "
                     "ORDER BY g.ROWID");
  ASSERT_EQ(sizes.size(), 4u);
  EXPECT_NE(sizes[0][0], "0");
  EXPECT_EQ(sizes[3][0], "0");
  // Members are people with phone numbers.
  expectMatches(book, {{"ABGroupMembers WHERE member_id NOT IN (SELECT "
                        "record_id FROM ABMultiValue WHERE property=3)",
                        false}});

  auto checked = ui::Image::fromFile(root + "/Library/Zorvel/checked.png", 2);
  auto unchecked =
      ui::Image::fromFile(root + "/Library/Zorvel/notchecked.png", 2);
  ASSERT_TRUE(checked && unchecked);
  EXPECT_EQ(checked->pixelWidth(), kCheckMarkSize);
  EXPECT_EQ(checked->pixel(8, 22), (ui::Pixel{0, 122, 255, 255}));  // disc
  EXPECT_EQ(checked->pixel(0, 0).a, 0);                             // corner
  EXPECT_EQ(unchecked->pixel(22, 22).a, 0);  // an empty ring
  EXPECT_EQ(unchecked->pixel(2, 22).a, 255);
}

// Every Control Centre glyph decodes as a 28-point template at scale 2:
// white when normal, black when selected, the same outline. The two Home
// buttons differ only inside the ring.
TEST_F(DeviceImageTest, EveryGlyphIsATemplateAndOnlyTheOlderHomeHasASquare) {
  const std::string root = create(options(0, 0, 1));
  for (const char* name : {"home", "home5s", "switcher", "lock", "cellular"}) {
    SCOPED_TRACE(name);
    auto normal = glyph(root, std::string(name) + "_normal");
    auto selected = glyph(root, std::string(name) + "_selected");
    ASSERT_TRUE(normal && selected);
    EXPECT_EQ(normal->size(), (platform::Size{28, 28}));
    ASSERT_EQ(selected->size(), normal->size());
    // Drawn, but not a filled square: the ground stays transparent.
    double c = coverage(*normal);
    EXPECT_GT(c, 0.08);
    EXPECT_LT(c, 0.7);
    EXPECT_EQ(normal->pixel(0, 0).a, 0);
    bool antialiased = false;
    for (int y = 0; y < normal->pixelHeight(); ++y) {
      for (int x = 0; x < normal->pixelWidth(); ++x) {
        ui::Pixel n = normal->pixel(x, y), s = selected->pixel(x, y);
        ASSERT_EQ(n.a, s.a) << x << "," << y;
        if (n.a == 0) continue;
        EXPECT_EQ(n, (ui::Pixel{255, 255, 255, n.a}));
        EXPECT_EQ(s, (ui::Pixel{0, 0, 0, n.a}));
        antialiased |= n.a != 255;
      }
    }
    EXPECT_TRUE(antialiased);
  }
  auto square = glyph(root, "home_normal"), ring = glyph(root, "home5s_normal");
  // Alpha at the ring's left edge, the square's left edge and the centre.
  const int mid = 28, edge = static_cast<int>(0.35 * 56);
  auto alphas = [&](const ui::ImagePtr& i) {
    auto a = [&](int x) { return i->pixel(x, mid).a; };
    return std::vector<bool>{a(2) > 0, a(edge) > 200, a(edge) == 0,
                             a(mid) == 0};
  };
  EXPECT_EQ(alphas(square), (std::vector<bool>{1, 1, 0, 1}));
  EXPECT_EQ(alphas(ring), (std::vector<bool>{1, 0, 1, 1}));
  EXPECT_EQ(square->pixel(2, mid).a, ring->pixel(2, mid).a);
}

TEST(PinYinTableTest, EveryLineIsDigitsEqualsCharactersAndFitsTheReader) {
  std::string table = readFile(kTable);
  ASSERT_FALSE(table.empty());
  ASSERT_EQ(table.back(), '\n');  // the reader drops each line's last byte
  std::istringstream lines(table);
  std::string line;
  std::map<std::string, std::string> readingOf;
  int count = 0;
  const std::regex format(R"([2-9]{1,9}=.+)");
  while (std::getline(lines, line)) {
    ++count;
    ASSERT_LT(line.size() + 1, 2048u) << "line " << count;
    ASSERT_TRUE(std::regex_match(line, format)) << "line " << count;
    size_t eq = line.find('=');
    std::string reading = line.substr(0, eq);
    for (size_t i = eq + 1; i < line.size();) {
      unsigned char lead = static_cast<unsigned char>(line[i]);
      size_t n = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 0;
      ASSERT_NE(n, 0u) << "line " << count << " is not Han UTF-8";
      std::string ch = line.substr(i, n);
      EXPECT_TRUE(readingOf.emplace(ch, reading).second)
          << ch << " listed twice";
      i += n;
    }
  }
  EXPECT_GT(readingOf.size(), 20000u);
  EXPECT_EQ(readingOf["张"], "94264");  // zhang
  EXPECT_EQ(readingOf["李"], "54");     // li
  EXPECT_EQ(readingOf["王"], "9264");   // wang
  EXPECT_EQ(readingOf["绿"], "58");     // lü is typed lv
  EXPECT_EQ(readingOf["曾"], "2364");   // ceng, the common reading
  // Within a reading, common characters come before rare ones.
  EXPECT_LT(table.find("王"), table.find("汪"));
  EXPECT_LT(table.find("张"), table.find("彰"));
}

}  // namespace
}  // namespace zv
