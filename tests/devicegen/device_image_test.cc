// Generated device images: the platform queries of the search engine run on
// them, they are deterministic, and their contents look like a real phone's.
#include "devicegen/device_image.h"

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "platform/db/platform_schema.h"
#include "platform/plist.h"
#include "platform/ui/image.h"
#include "support/device_files.h"

namespace zv {
namespace {

namespace fs = std::filesystem;
namespace ps = platform_schema;

const std::string kTable =
    std::string(ZV_SOURCE_DIR) + "/data/table/PinYin.txt";

using testing::readFile;

using Row = std::vector<std::string>;  // NULL reads as "<null>"

// Runs one statement; `bind` may bind its parameters.
std::vector<Row> query(const std::string& file, const std::string& sql,
                       const std::function<void(sqlite3_stmt*)>& bind = {}) {
  sqlite3* db = nullptr;
  EXPECT_EQ(sqlite3_open_v2(file.c_str(), &db, SQLITE_OPEN_READWRITE, nullptr),
            SQLITE_OK)
      << file;
  sqlite3_stmt* s = nullptr;
  std::vector<Row> rows;
  if (sqlite3_prepare_v2(db, sql.c_str(), -1, &s, nullptr) != SQLITE_OK) {
    ADD_FAILURE() << sql << ": " << sqlite3_errmsg(db);
  } else {
    if (bind) bind(s);
    int rc;
    while ((rc = sqlite3_step(s)) == SQLITE_ROW) {
      Row row;
      for (int i = 0; i < sqlite3_column_count(s); ++i) {
        const unsigned char* t = sqlite3_column_text(s, i);
        if (t) {
          row.emplace_back(reinterpret_cast<const char*>(t),
                           sqlite3_column_bytes(s, i));
        } else {
          row.emplace_back("<null>");
        }
      }
      rows.push_back(std::move(row));
    }
    EXPECT_EQ(rc, SQLITE_DONE) << sql << ": " << sqlite3_errmsg(db);
  }
  sqlite3_finalize(s);
  sqlite3_close(db);
  return rows;
}

class DeviceImageTest : public ::testing::Test {
 protected:
  void TearDown() override {
    for (const std::string& r : roots_) fs::remove_all(r);
  }

  std::string makeRoot() {
    std::string root =
        (fs::temp_directory_path() /
         ("zv-device-" + std::to_string(getpid()) + "-" +
          ::testing::UnitTest::GetInstance()->current_test_info()->name() +
          "-" + std::to_string(roots_.size())))
            .string();
    fs::remove_all(root);
    roots_.push_back(root);
    return root;
  }

  std::string create(const DeviceImageOptions& options,
                     DeviceImageSummary* summary = nullptr) {
    std::string root = makeRoot();
    DeviceImageSummary s = createDeviceImage(root, options);
    if (summary) *summary = s;
    return root;
  }

  static std::string db(const std::string& root, const char* devicePath) {
    return root + devicePath;
  }

  std::vector<std::string> roots_;
};

DeviceImageOptions options(int contacts, int calls, uint64_t seed) {
  DeviceImageOptions o;
  o.contacts = contacts;
  o.calls = calls;
  o.seed = seed;
  o.tableFile = kTable;
  return o;
}

TEST_F(DeviceImageTest, ContactQueriesOfTheSearchEngineReadTheAddressBook) {
  DeviceImageSummary summary;
  std::string root = create(options(150, 50, 7), &summary);
  std::string book = db(root, ps::kAddressBookPath);

  auto rows =
      query(book,
            "SELECT ABMultiValue.record_id,ABPerson.First,ABPerson.Last,"
            "ABPerson.Organization,ABMultiValue.Value,ABMultiValue.label "
            "FROM ABPerson,ABMultiValue WHERE "
            "ABPerson.ROWID=ABMultiValue.record_id AND property=3 ORDER "
            "BY ABMultiValue.record_id DESC");
  ASSERT_EQ(static_cast<int>(rows.size()), summary.phoneNumbers);
  auto labels = query(book,
                      "SELECT ROWID,value FROM ABMultiValueLabel ORDER BY "
                      "ROWID ASC");
  std::map<std::string, std::string> labelById;
  for (const Row& r : labels) labelById[r[0]] = r[1];
  EXPECT_EQ(labelById["1"], ps::kLabelMobile);
  bool sawNoLabel = false, sawName = false, sawCompanyOnly = false;
  long previous = 1L << 40;
  for (const Row& r : rows) {
    long id = std::stol(r[0]);
    EXPECT_LE(id, previous);  // newest contacts first
    previous = id;
    EXPECT_NE(r[4], "<null>");
    if (r[5] == "<null>") {
      sawNoLabel = true;
    } else {
      EXPECT_TRUE(labelById.count(r[5])) << "label " << r[5];
    }
    sawName |= r[1] != "<null>";
    sawCompanyOnly |= r[1] == "<null>" && r[2] == "<null>" && r[3] != "<null>";
  }
  EXPECT_TRUE(sawNoLabel);
  EXPECT_TRUE(sawName);
  EXPECT_TRUE(sawCompanyOnly);
  // E-mail addresses share the table and must not come back as numbers.
  EXPECT_FALSE(
      query(book, "SELECT 1 FROM ABMultiValue WHERE property=4").empty());

  // Facts of the owner's card, the record the default settings name.
  auto facts = query(book,
                     "SELECT Organization,Department,JobTitle,Nickname,"
                     "Birthday,Note FROM ABPerson WHERE ROWID = ?",
                     [](sqlite3_stmt* s) { sqlite3_bind_int(s, 1, 1); });
  ASSERT_EQ(facts.size(), 1u);
  EXPECT_NE(facts[0][0], "<null>");
  // Birthdays: seconds since 2001 that read as numbers, at noon UTC.
  auto birthdays = query(book,
                         "SELECT Birthday FROM ABPerson WHERE Birthday IS NOT "
                         "NULL");
  ASSERT_FALSE(birthdays.empty());
  for (const Row& r : birthdays) {
    long long seconds = std::stoll(r[0]);
    EXPECT_EQ(((seconds % 86400) + 86400) % 86400, 43200) << r[0];
  }
}

TEST_F(DeviceImageTest, PicturesDecodeAndTheFirstNonEmptyRowIsThePicture) {
  DeviceImageSummary summary;
  std::string root = create(options(400, 0, 3), &summary);
  std::string images = db(root, ps::kAddressBookImagesPath);
  auto records =
      query(images, "SELECT DISTINCT record_id FROM ABThumbnailImage");
  ASSERT_EQ(static_cast<int>(records.size()), summary.pictures);
  ASSERT_GT(summary.pictures, 20);
  int emptyFirst = 0, png = 0, jpeg = 0;
  for (const Row& record : records) {
    std::vector<std::string> blobs;
    sqlite3* handle = nullptr;
    sqlite3_open(images.c_str(), &handle);
    sqlite3_stmt* s = nullptr;
    sqlite3_prepare_v2(handle,
                       "SELECT data FROM ABThumbnailImage WHERE record_id = ? "
                       "ORDER BY format ASC",
                       -1, &s, nullptr);
    sqlite3_bind_int64(s, 1, std::stoll(record[0]));
    while (sqlite3_step(s) == SQLITE_ROW)
      blobs.emplace_back(static_cast<const char*>(sqlite3_column_blob(s, 0)),
                         sqlite3_column_bytes(s, 0));
    sqlite3_finalize(s);
    sqlite3_close(handle);
    ASSERT_FALSE(blobs.empty());
    if (blobs[0].empty()) ++emptyFirst;
    const std::string& picture = blobs[0].empty() ? blobs.at(1) : blobs[0];
    (picture.compare(0, 4, "\x89PNG") == 0 ? png : jpeg)++;
    ui::ImagePtr image = ui::Image::decode(picture, 1);
    ASSERT_NE(image, nullptr) << "record " << record[0];
    EXPECT_EQ(image->pixelWidth(), 120);
    EXPECT_EQ(image->pixelHeight(), 120);
    // The initial is drawn in white over the gradient.
    const auto& px = image->rgba();
    bool white = false;
    for (size_t i = 0; i < px.size(); i += 4)
      white |= px[i] > 240 && px[i + 1] > 240 && px[i + 2] > 240;
    EXPECT_TRUE(white) << "record " << record[0];
  }
  EXPECT_GT(emptyFirst, 0);
  EXPECT_GT(png, 0);
  EXPECT_GT(jpeg, 0);
  EXPECT_FALSE(
      query(images, "SELECT 1 FROM ABThumbnailImage WHERE record_id = 1")
          .empty());

  std::string avatar = readFile(root + "/Library/Zorvel/avatar.png");
  ui::ImagePtr own = ui::Image::decode(avatar, 1);
  ASSERT_NE(own, nullptr);
  EXPECT_EQ(own->pixelWidth(), own->pixelHeight());
}

TEST_F(DeviceImageTest, CallHistoryQueriesOfBothSystemVersions) {
  std::string root = create(options(80, 300, 11));
  std::string store = db(root, ps::kCallHistoryStorePath);
  std::string old = db(root, ps::kCallHistoryDbPath);

  auto recent = query(store,
                      "SELECT DISTINCT ZADDRESS FROM ZCALLRECORD WHERE "
                      "ZADDRESS!='' ORDER BY ZDATE DESC");
  auto recentOld = query(old,
                         "SELECT DISTINCT address FROM call WHERE address!='' "
                         "ORDER BY date DESC");
  ASSERT_GT(recent.size(), 20u);
  EXPECT_EQ(recent.size(), recentOld.size());
  // Withheld numbers are stored as empty text and filtered out above.
  EXPECT_FALSE(
      query(store, "SELECT 1 FROM ZCALLRECORD WHERE ZADDRESS=''").empty());

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
  EXPECT_EQ(query(store,
                  "SELECT ZDATE FROM ZCALLRECORD ORDER BY ZDATE ASC "
                  "LIMIT 1")
                .size(),
            1u);
  EXPECT_EQ(
      query(old, "SELECT date FROM call ORDER BY date ASC LIMIT 1").size(), 1u);

  // Missed calls exist in both forms: never connected, incoming.
  EXPECT_FALSE(query(store,
                     "SELECT 1 FROM ZCALLRECORD WHERE ZDURATION=0 AND "
                     "ZORIGINATED=0 AND ZANSWERED=0")
                   .empty());
  EXPECT_FALSE(
      query(old, "SELECT 1 FROM call WHERE duration=0 AND flags=4").empty());

  // Calls from contacts carry the contact's dialable number; the others are
  // strangers (id -1).
  auto known = query(old, "SELECT DISTINCT id, address FROM call WHERE id>0");
  auto strangers = query(old, "SELECT 1 FROM call WHERE id=-1");
  ASSERT_FALSE(known.empty());
  EXPECT_FALSE(strangers.empty());
  std::string book = db(root, ps::kAddressBookPath);
  for (const Row& r : known) {
    bool found = false;
    for (const Row& v : query(book,
                              "SELECT value FROM ABMultiValue WHERE "
                              "property=3 AND record_id=" +
                                  r[0])) {
      std::string digits;
      for (char c : v[0])
        if (std::string("0123456789#*+,;").find(c) != std::string::npos)
          digits += c;
      found |= digits == r[1];
    }
    EXPECT_TRUE(found) << r[0] << " " << r[1];
  }
}

TEST_F(DeviceImageTest, BackupTablesTakeWholeCallRecordRows) {
  std::string root = create(options(20, 40, 5));
  std::string store = db(root, ps::kCallHistoryStorePath);
  sqlite3* handle = nullptr;
  ASSERT_EQ(sqlite3_open(store.c_str(), &handle), SQLITE_OK);
  std::string sql = ps::callRecordTableSql("ZVZCALLRECORD") +
                    "INSERT INTO ZVZCALLRECORD SELECT * FROM ZCALLRECORD "
                    "WHERE Z_PK<=10;"
                    "UPDATE ZVZCALLRECORD SET Z_PK=Z_PK+1000, ZDATE=ZDATE-1e7;";
  ASSERT_EQ(sqlite3_exec(handle, sql.c_str(), nullptr, nullptr, nullptr),
            SQLITE_OK)
      << sqlite3_errmsg(handle);
  sqlite3_close(handle);
  EXPECT_EQ(query(store, "SELECT COUNT(*) FROM ZVZCALLRECORD")[0][0], "10");
  query(store,
        "INSERT INTO ZCALLRECORD SELECT * FROM ZVZCALLRECORD WHERE ZDATE < "
        "(SELECT ZDATE FROM ZCALLRECORD ORDER BY ZDATE ASC LIMIT 1) ORDER BY "
        "ZDATE DESC LIMIT ?",
        [](sqlite3_stmt* s) { sqlite3_bind_int(s, 1, 4); });
  EXPECT_EQ(query(store, "SELECT COUNT(*) FROM ZCALLRECORD")[0][0], "44");
  // Dates are bound as read, as doubles (their text form is rounded).
  double oldest = 0;
  query(store, "SELECT MIN(ZDATE) FROM ZVZCALLRECORD", [&](sqlite3_stmt* s) {
    ASSERT_EQ(sqlite3_step(s), SQLITE_ROW);
    oldest = sqlite3_column_double(s, 0);
    sqlite3_reset(s);
  });
  query(store, "DELETE FROM ZVZCALLRECORD WHERE ZDATE = ?",
        [&](sqlite3_stmt* s) { sqlite3_bind_double(s, 1, oldest); });
  EXPECT_EQ(query(store, "SELECT COUNT(*) FROM ZVZCALLRECORD")[0][0], "9");

  std::string old = db(root, ps::kCallHistoryDbPath);
  ASSERT_EQ(sqlite3_open(old.c_str(), &handle), SQLITE_OK);
  sql = ps::callTableSql("deleted") +
        "INSERT INTO deleted SELECT * FROM call WHERE ROWID<=3;";
  EXPECT_EQ(sqlite3_exec(handle, sql.c_str(), nullptr, nullptr, nullptr),
            SQLITE_OK)
      << sqlite3_errmsg(handle);
  sqlite3_close(handle);
  EXPECT_EQ(query(old, "SELECT COUNT(*) FROM deleted")[0][0], "3");
}

TEST_F(DeviceImageTest, SameSeedSameBytesOtherSeedOtherPeople) {
  std::string a = create(options(200, 100, 42));
  std::string b = create(options(200, 100, 42));
  std::string c = create(options(200, 100, 43));
  for (const char* path : {ps::kAddressBookPath, ps::kAddressBookImagesPath,
                           ps::kCallHistoryStorePath, ps::kCallHistoryDbPath,
                           "/Library/Zorvel/avatar.png",
                           "/var/mobile/Library/Preferences/zorvel.plist"}) {
    std::string bytes = readFile(db(a, path));
    ASSERT_FALSE(bytes.empty()) << path;
    EXPECT_EQ(bytes, readFile(db(b, path))) << path;
  }
  const std::string names =
      "SELECT First, Last, Organization FROM ABPerson ORDER BY ROWID";
  EXPECT_NE(query(db(a, ps::kAddressBookPath), names),
            query(db(c, ps::kAddressBookPath), names));
  const std::string calls = "SELECT address, date FROM call ORDER BY ROWID";
  EXPECT_NE(query(db(a, ps::kCallHistoryDbPath), calls),
            query(db(c, ps::kCallHistoryDbPath), calls));
}

TEST_F(DeviceImageTest, CountsInstalledDataAndBadInput) {
  DeviceImageSummary summary;
  DeviceImageOptions o = options(1234, 567, 9);
  std::string area = makeRoot() + ".area";
  std::ofstream(area) << "area bytes";
  o.areaFile = area;
  std::string root = create(o, &summary);
  fs::remove(area);
  EXPECT_EQ(summary.contacts, 1234);
  EXPECT_EQ(summary.calls, 567);
  EXPECT_EQ(query(db(root, ps::kAddressBookPath),
                  "SELECT COUNT(*) FROM ABPerson")[0][0],
            "1234");
  EXPECT_EQ(query(db(root, ps::kCallHistoryStorePath),
                  "SELECT COUNT(*) FROM ZCALLRECORD")[0][0],
            "567");
  EXPECT_EQ(query(db(root, ps::kCallHistoryDbPath),
                  "SELECT COUNT(*) FROM call")[0][0],
            "567");
  // Deleted records leave gaps in the ids.
  EXPECT_GT(std::stoi(query(db(root, ps::kAddressBookPath),
                            "SELECT MAX(ROWID) FROM ABPerson")[0][0]),
            1234);
  EXPECT_EQ(readFile(root + "/Library/Zorvel/Table/PinYin.txt"),
            readFile(kTable));
  EXPECT_EQ(readFile(root + "/Library/Zorvel/Area/China"), "area bytes");
  auto settings = plist::readDictionary(
      root + "/var/mobile/Library/Preferences/zorvel.plist");
  ASSERT_TRUE(settings);
  EXPECT_TRUE(settings->at("Enable").boolValue());
  EXPECT_EQ(settings->at("MyInfo").intValue(), 1);

  // Creating again over the same root replaces the databases.
  createDeviceImage(root, options(10, 5, 9));
  EXPECT_EQ(query(db(root, ps::kAddressBookPath),
                  "SELECT COUNT(*) FROM ABPerson")[0][0],
            "10");

  // An empty book still gets a call history, all from strangers.
  std::string empty = create(options(0, 30, 1));
  EXPECT_EQ(query(db(empty, ps::kCallHistoryDbPath),
                  "SELECT COUNT(*) FROM call WHERE id=-1")[0][0],
            "30");

  EXPECT_THROW(createDeviceImage(makeRoot(), options(-1, 0, 1)),
               std::runtime_error);
  DeviceImageOptions missing = options(5, 5, 1);
  missing.tableFile = "/nonexistent/PinYin.txt";
  EXPECT_THROW(createDeviceImage(makeRoot(), missing), std::runtime_error);
  missing = options(5, 5, 1);
  missing.settingsFile = "/nonexistent/zorvel.plist";
  EXPECT_THROW(createDeviceImage(makeRoot(), missing), std::runtime_error);
}

TEST_F(DeviceImageTest, NumbersComeInMixedStylesFromRealPlans) {
  DevicePeople people = generateDevicePeople(600, 0, 17);
  std::map<std::string, int> styles;
  const std::regex mobile(R"((\+86|0086)?1[3-9]\d{9})");
  const std::regex fixedLine(
      R"((\+86|0)(10|2\d|[3-9]\d\d)[2-8]\d{6,7}(,\d{3})?)");
  const std::regex service(R"(1\d{4}|9\d{4}|[48]00\d{7})");
  const std::regex foreign(R"(\+(852|1|44)\d{7,10})");
  int owner = 0;
  for (const DeviceContact& c : people.contacts) {
    owner += c.recordId == 1;
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
  EXPECT_EQ(owner, 1);
  for (const char* style : {"+86", "0086", "space", "dash", "bracket",
                            "extension", "plain", "fixed", "mobile"})
    EXPECT_GT(styles[style], 0) << style;

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
