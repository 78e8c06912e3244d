// ZVAddressBook (facts, phone labels, pictures and their cache) and the
// background avatar loader that reads pictures from it on real threads.
#include "search/address_book.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include "platform/db/platform_schema.h"
#include "platform/linux/linux_platform.h"
#include "search/avatar_loader.h"
#include "support/device_db.h"
#include "support/phone_process.h"
#include "support/picture_rows.h"

namespace zv {
namespace {

namespace ps = platform_schema;
using platform::Size;
using testing::allPixels;
using ui::Image;
using ui::Pixel;

const Pixel kRed{255, 0, 0, 255};
const Pixel kBlue{0, 0, 255, 255};
const Pixel kGrey{128, 128, 128, 255};

// 1990-01-05 00:00 UTC in seconds since 2001-01-01.
constexpr double kBirthday = 631497600.0 - 978307200.0;

// A Phone process (launch) over empty address-book databases.
class AddressBookTest : public testing::PhoneProcessTest {
 protected:
  void SetUp() override {
    ASSERT_TRUE(ps::createDatabase(root_ + ps::kAddressBookPath,
                                   ps::Database::kAddressBook));
    ASSERT_TRUE(ps::createDatabase(root_ + ps::kAddressBookImagesPath,
                                   ps::Database::kAddressBookImages));
  }
  void exec(const char* devicePath, const std::string& sql) {
    testing::execSql(root_ + devicePath, sql);
  }
  void addPicture(int recordId, int format, Pixel colour, int w = 80,
                  int h = 80) {
    testing::addColourPicture(root_, recordId, colour, format, w, h);
  }
  // Runs f(book) in a fresh Phone process.
  template <typename F>
  void inPhone(const Dict& settings, platform::DeviceFacts facts, F f) {
    launch(settings, facts).run([&] { f(ZVAddressBook::sharedInstance()); });
  }
  template <typename F>
  void inPhone(F f) {
    inPhone({}, {}, f);
  }
  void installPlaceholder() {
    writeDeviceFile(ZVAddressBook::kNullAvatarPath,
                    Image::filled(60, 60, 1, kGrey).encodePng());
  }
};

TEST_F(AddressBookTest, FactsFollowTheMaskAndSkipEmptyColumns) {
  exec(ps::kAddressBookPath,
       "INSERT INTO ABPerson (ROWID, First, Organization, Department, "
       "JobTitle, Nickname, Birthday, Note) VALUES "
       "(1, 'Ann', 'Acme', 'R&D', 'Chemist', 'Annie', '" +
           std::to_string(kBirthday) +
           "', ''), (2, 'Bo', NULL, '', NULL, NULL, NULL, 'Call after six')");
  inPhone([&](auto book) {
    EXPECT_EQ(book->getAddressBookInfo(1, 1 | 32), "Acme");
    EXPECT_EQ(book->getAddressBookInfo(1, 63),
              "Acme\nR&D\nChemist\nAnnie\nJanuary 5, 1990");
    EXPECT_EQ(book->getAddressBookInfo(1, 4 | 16), "Chemist\nJanuary 5, 1990");
    EXPECT_EQ(book->getAddressBookInfo(2, 63), "Call after six");
    // Nothing selected that the contact has, or nothing to look up.
    for (auto [id, mask] :
         {std::pair{2, 1 | 2 | 16}, {1, 0}, {-1, 63}, {99, 63}})
      EXPECT_EQ(book->getAddressBookInfo(id, mask), std::nullopt) << id;
  });

  // The birthday takes the device's locale.
  platform::DeviceFacts china;
  china.locale = "zh_CN";
  inPhone({}, china, [](auto book) {
    EXPECT_EQ(book->getAddressBookInfo(1, 16), "1990年1月5日");
  });

  // No database: nothing, and none is made.
  std::filesystem::remove(root_ + ps::kAddressBookPath);
  inPhone([](auto book) {
    EXPECT_EQ(book->getAddressBookInfo(1, 63), std::nullopt);
  });
  EXPECT_FALSE(std::filesystem::exists(root_ + ps::kAddressBookPath));
}

TEST_F(AddressBookTest, PhoneLabelsAreLocalisedAndLoadedOnce) {
  exec(ps::kAddressBookPath,
       "INSERT INTO ABMultiValueLabel (ROWID, value) VALUES "
       "(1, '_$!<Mobile>!$_'), (2, 'Office line'), (3, '_$!<Satellite>!$_'),"
       "(4, NULL), (5, '_$!<Home>!$_')");
  auto& phone = launch({});
  phone.setLocalizedStrings({{"mobile", "手机"}});
  phone.run([&] {
    auto book = ZVAddressBook::sharedInstance();
    std::vector<std::optional<std::string>> labels;
    for (int id : {1, 2, 3, 4, 5, -1})
      labels.push_back(book->getPhoneTypeLabel(id));
    EXPECT_EQ(labels, (decltype(labels){"手机", "Office line", "Satellite",
                                        std::nullopt, "home", std::nullopt}));

    // Labels added later are seen only after an explicit reload.
    exec(ps::kAddressBookPath,
         "INSERT INTO ABMultiValueLabel (ROWID, value) VALUES (6, 'Boat')");
    EXPECT_EQ(book->getPhoneTypeLabel(6), std::nullopt);
    book->loadPhoneTypeLables();
    EXPECT_EQ(book->getPhoneTypeLabel(6), "Boat");
  });
}

TEST_F(AddressBookTest, PictureIsTheFirstNonEmptyFormatScaledAndCached) {
  addPicture(7, 2, kBlue);
  addPicture(7, 1, kRed);
  testing::addPictureRow(root_, 7, 0, "");
  inPhone([&](auto book) {
    EXPECT_EQ(ZVAddressBook::getAvatarKey(12, {40, 40}),
              "12_40.000000_40.000000");

    ui::ImagePtr raw = book->getAvatar(7);
    ASSERT_NE(raw, nullptr);
    EXPECT_EQ(raw->size(), (Size{40, 40}));  // 80 pixels at scale 2
    EXPECT_TRUE(allPixels(raw, kRed));

    ui::ImagePtr small = book->getAvatar(7, Size{36, 36}, false);
    ASSERT_NE(small, nullptr);
    EXPECT_EQ(small->pixelWidth(), 72);
    EXPECT_EQ(small->scale(), 2);
    EXPECT_TRUE(allPixels(small, kRed));
    EXPECT_EQ(book->getCahcedAvatar(7, {36, 36}), small);

    // Served from memory: the database is not read again.
    exec(ps::kAddressBookImagesPath, "DELETE FROM ABThumbnailImage");
    EXPECT_EQ(book->getAvatar(7, Size{36, 36}, false), small);
    EXPECT_EQ(book->getAvatar(7), nullptr);
    EXPECT_EQ(book->getAvatar(7, Size{50, 50}, false), nullptr);
  });
}

TEST_F(AddressBookTest, PlaceholderStandsInOnlyWhenAllowed) {
  // A record whose own data is not a picture. (Records with and without a
  // picture are the lists' suites'.)
  struct Corrupt : ABPersonRecord {
    int32_t recordId() const override { return 12; }
    bool hasImageData() const override { return true; }
    std::string copyImageData(int) const override { return "not a picture"; }
  } corrupt;
  // Without its file the placeholder is a transparent picture.
  inPhone([&](auto book) {
    ASSERT_NE(book->getNullAvatar(), nullptr);
    EXPECT_TRUE(book->getNullAvatar()->empty());
    ui::ImagePtr sized = book->getNullAvatarWithsize({44, 44});
    EXPECT_TRUE(allPixels(sized, Pixel{}));
    EXPECT_EQ(sized->pixelWidth(), 88);
  });

  installPlaceholder();
  inPhone([&](auto book) {
    EXPECT_EQ(book->getAvatar(-1, Size{40, 40}, false), nullptr);
    EXPECT_EQ(book->getAvatar(-2, Size{40, 40}, false), nullptr);
    ui::ImagePtr placeholder = book->getAvatar(-1, Size{40, 40}, true);
    EXPECT_TRUE(allPixels(placeholder, kGrey));
    EXPECT_EQ(placeholder->pixelWidth(), 80);
    EXPECT_EQ(book->getNullAvatarWithsize({40, 40}), placeholder);
    EXPECT_EQ(book->getCahcedAvatar(-2, {40, 40}), placeholder);

    // A contact without picture: null without the flag. (With it, the
    // placeholder cached under the contact's key: RemovingAContact...)
    EXPECT_EQ(book->getAvatar(8, Size{40, 40}, false), nullptr);

    // The record's own data wins over the stored picture, even when broken.
    addPicture(12, 0, kBlue);
    EXPECT_EQ(book->getAvatar(0, &corrupt, {44, 44}, false), nullptr);
    EXPECT_TRUE(allPixels(book->getAvatar(0, &corrupt, {44, 44}, true), kGrey));
  });
}

TEST_F(AddressBookTest, RemovingAContactDropsOnlyTheListSizes) {
  installPlaceholder();
  inPhone([&](auto book) {
    for (double side : {36.0, 40.0, 44.0, 50.0, 60.0})
      book->getAvatar(5, Size{side, side});
    book->getAvatar(6, Size{40, 40});
    // Five for the contact, five for -1 (the placeholder), one for 6.
    EXPECT_EQ(book->cachedAvatarCount(), 11u);
    // The picture appears later; the cached placeholder hides it until the
    // contact's entries are dropped.
    addPicture(5, 0, kRed);
    EXPECT_TRUE(allPixels(book->getAvatar(5, Size{40, 40}), kGrey));
    book->removeCachedAvatar(5);
    for (double side : {36.0, 40.0, 44.0, 50.0})
      EXPECT_TRUE(allPixels(book->getAvatar(5, Size{side, side}), kRed));
    EXPECT_TRUE(allPixels(book->getAvatar(5, Size{60, 60}), kGrey));
    EXPECT_NE(book->getCahcedAvatar(6, {40, 40}), nullptr);
  });
}

TEST_F(AddressBookTest, TheFiveHundredthPictureEmptiesTheCacheFirst) {
  inPhone([&](auto book) {
    auto picture = std::make_shared<const Image>(Image::filled(4, 4, 2, kRed));
    for (int id = 1; id < 500; ++id)
      ASSERT_NE(book->setCacheAvatar(id, picture, {10, 10}), nullptr);
    EXPECT_EQ(book->cachedAvatarCount(), 499u);
    // Storing an entry that is already there does not count.
    book->setCacheAvatar(1, picture, {10, 10});
    EXPECT_EQ(book->cachedAvatarCount(), 499u);
    book->setCacheAvatar(500, picture, {10, 10});
    EXPECT_EQ(book->cachedAvatarCount(), 1u);
    EXPECT_NE(book->getCahcedAvatar(500, {10, 10}), nullptr);
    EXPECT_EQ(book->getCahcedAvatar(1, {10, 10}), nullptr);
    EXPECT_EQ(book->setCacheAvatar(501, nullptr, {10, 10}), nullptr);
  });
}

TEST_F(AddressBookTest, OwnPictureComesFromMyInfoAndIsLookedForOnce) {
  addPicture(3, 0, kBlue, 120, 60);
  inPhone({{"MyInfo", 3}}, {}, [&](auto book) {
    ui::ImagePtr mine = book->getMyAvatarWithSize({28, 28});
    ASSERT_NE(mine, nullptr);
    EXPECT_EQ(mine->pixelWidth(), 56);
    EXPECT_TRUE(allPixels(mine, kBlue));
    EXPECT_EQ(book->getCahcedAvatar(ZVAddressBook::kMyAvatarId, {28, 28}),
              mine);
    EXPECT_EQ(book->getMyAvatar()->pixelWidth(), 120);  // unscaled
  });

  inPhone({{"MyInfo", 4}}, {}, [&](auto book) {
    EXPECT_EQ(book->getMyAvatarWithSize({28, 28}), nullptr);
    addPicture(4, 0, kBlue);
    EXPECT_EQ(book->getMyAvatarWithSize({28, 28}), nullptr);
  });
}

// Lists load pictures on background queues while the main thread reads the
// cache; run under ThreadSanitizer this catches unguarded cache access.
TEST_F(AddressBookTest, CacheIsSafeFromSeveralThreads) {
  installPlaceholder();
  for (int id = 1; id <= 12; ++id)
    addPicture(id, 0, id % 2 ? kRed : kBlue, 40 + id, 40);
  auto& phone = launch({});
  auto book = phone.run([] { return ZVAddressBook::sharedInstance(); });
  std::atomic<int> wrong{0};
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t)
    threads.emplace_back([&, t] {
      platform::Process::Scope scope(phone.context());
      auto picture =
          std::make_shared<const Image>(Image::filled(6, 6, 2, kBlue));
      for (int i = 0; i < 300; ++i) {
        const int id = 1 + (i + t) % 14;  // 13 and 14 have no picture
        const double side = (i % 3 == 0) ? 36 : 40;
        ui::ImagePtr image = book->getAvatar(id, Size{side, side});
        if (!image || image->pixelWidth() != side * 2) ++wrong;
        if (i % 7 == t) book->removeCachedAvatar(id);
        if (i % 11 == 0)
          book->setCacheAvatar(1000 + i * 4 + t, picture, {9, 9});
        if (book->getMyAvatarWithSize({20, 20})) ++wrong;  // MyInfo is -1
        book->getPhoneTypeLabel(1);
      }
    });
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(wrong.load(), 0);
  EXPECT_LT(book->cachedAvatarCount(), ZVAddressBook::kAvatarCacheLimit);
}

// Red pictures for the odd record ids 1 to `count`, blue for the even.
void writePictures(const std::string& root, int count) {
  ASSERT_TRUE(ps::createDatabase(root + ps::kAddressBookPath,
                                 ps::Database::kAddressBook));
  for (int id = 1; id <= count; ++id)
    testing::addColourPicture(root, id, id % 2 ? kRed : kBlue);
}

bool showsColour(const ui::UIImageView& view, Pixel colour) {
  const ui::ImagePtr& image = view.image();
  return image && image->pixelWidth() > 0 && image->pixel(0, 0) == colour;
}

// On real threads, while the main thread re-tags half of the views and drops
// a quarter: a picture reaches only a view still carrying its tag, on the
// main thread. (The lists' suites show it on the simulated queues.)
TEST(AvatarLoaderLinuxTest, ReusedViewsKeepTheirNewTagFromSeveralThreads) {
  testing::TempRoot temp;
  constexpr int kViews = 24;
  writePictures(temp.path(), kViews);
  platform::LinuxPlatform linux;
  linux.setRoot(temp.path());
  platform::Process context(&linux);
  platform::Process::Scope scope(context);

  auto book = ZVAddressBook::sharedInstance();
  std::vector<std::shared_ptr<ui::UIImageView>> views;
  std::vector<int> results(kViews, -1);
  int finished = 0;
  for (int i = 0; i < kViews; ++i) {
    const int id = i + 1;
    auto view = ui::make<ui::UIImageView>();
    view->setTag(avatarViewTag(id));
    loadAvatarInBackground(view, avatarViewTag(id), book, id, Size{40, 40},
                           [&, i](bool set) {
                             results[i] = set;
                             if (++finished == kViews) linux.quit();
                           });
    // Every other cell is reused for a record without a picture at once.
    if (i % 2) view->setTag(avatarViewTag(1000 + id));
    views.push_back(i % 4 == 2 ? nullptr : view);
  }
  linux.performAfterDelay(nullptr, "", 20.0, [&] { linux.quit(); });
  linux.run();
  linux.cancelPrevious(nullptr, "");
  ASSERT_EQ(finished, kViews);
  for (int i = 0; i < kViews; ++i) {
    SCOPED_TRACE(i);
    const bool reused = i % 2;
    EXPECT_EQ(results[i], reused || !views[i] ? 0 : 1);
    if (reused) {
      EXPECT_FALSE(views[i]->image());
    } else if (views[i]) {
      EXPECT_TRUE(showsColour(*views[i], (i + 1) % 2 ? kRed : kBlue));
    }
  }
  context.clear();
}

}  // namespace
}  // namespace zv
