// The background avatar loader: a picture reaches its image view only while
// the view still carries the tag it was asked for, on the simulated
// platform (deterministic queues) and on the Linux platform with real
// background threads (also run under ThreadSanitizer).
#include "search/avatar_loader.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/db/platform_schema.h"
#include "platform/linux/linux_platform.h"
#include "platform/ui/view.h"
#include "search/address_book.h"
#include "support/picture_rows.h"
#include "support/sim_fixture.h"

namespace zv {
namespace {

namespace ps = platform_schema;
using platform::Size;
using ui::Pixel;

const Pixel kRed{255, 0, 0, 255};
const Pixel kBlue{0, 0, 255, 255};

// A device root whose picture database holds a red picture for the odd
// record ids and a blue one for the even ids, 1 to `count`.
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

TEST(AvatarViewTag, SetsBit31OfTheRecordId) {
  EXPECT_EQ(avatarViewTag(5), static_cast<int>(0x80000005u));
  EXPECT_EQ(avatarViewTag(0), static_cast<int>(0x80000000u));
  EXPECT_EQ(avatarViewTag(-1), -1);
}

class AvatarLoaderTest : public testing::SimTest {
 protected:
  void SetUp() override { writePictures(root_, 4); }
};

TEST_F(AvatarLoaderTest, AViewReusedForAnotherTagKeepsItsNewPicture) {
  auto& phone = world_.launch("com.apple.mobilephone");
  std::vector<std::string> done;
  auto report = [&](std::string name) {
    return [&done, name](bool set) {
      done.push_back(name + (set ? " set" : " kept"));
    };
  };
  std::shared_ptr<ui::UIImageView> kept, reused, gone;
  phone.run([&] {
    auto book = ZVAddressBook::sharedInstance();
    kept = ui::make<ui::UIImageView>();
    reused = ui::make<ui::UIImageView>();
    gone = ui::make<ui::UIImageView>();
    kept->setTag(avatarViewTag(1));
    loadAvatarInBackground(kept, avatarViewTag(1), book, 1, Size{40, 40},
                           report("kept"));
    reused->setTag(2);
    loadAvatarInBackground(reused, 2, book, 2, Size{40, 40}, report("reused"));
    gone->setTag(4);
    loadAvatarInBackground(gone, 4, book, 4, Size{40, 40}, report("gone"));
    // Before the pictures arrive the list reuses one cell for record 3 and
    // drops another.
    reused->setTag(3);
    reused->setImage(book->getAvatar(3, Size{40, 40}));
    gone.reset();
  });
  // Nothing runs behind the main thread's back.
  EXPECT_TRUE(done.empty());
  EXPECT_FALSE(kept->image());
  world_.advance(0);
  EXPECT_EQ(done,
            (std::vector<std::string>{"kept set", "reused kept", "gone kept"}));
  EXPECT_TRUE(showsColour(*kept, kRed));
  EXPECT_TRUE(showsColour(*reused, kRed));  // record 3's, not record 2's
}

// Real background threads: the pictures are read while the main thread
// re-tags half of the views; every view ends with the picture of the tag it
// carries last, and the views are only touched on the main thread.
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
    views.push_back(view);
  }
  linux.performAfterDelay(nullptr, "", 20.0, [&] { linux.quit(); });
  linux.run();
  linux.cancelPrevious(nullptr, "");
  ASSERT_EQ(finished, kViews);
  for (int i = 0; i < kViews; ++i) {
    SCOPED_TRACE(i);
    const bool reused = i % 2;
    EXPECT_EQ(results[i], reused ? 0 : 1);
    if (reused)
      EXPECT_FALSE(views[i]->image());
    else
      EXPECT_TRUE(showsColour(*views[i], (i + 1) % 2 ? kRed : kBlue));
  }
  context.clear();
}

}  // namespace
}  // namespace zv
