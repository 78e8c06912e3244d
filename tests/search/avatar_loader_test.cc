// The background avatar loader: a picture reaches its image view only while
// the view still carries the tag it was asked for, on the Linux platform
// with real background threads (also run under ThreadSanitizer). (The lists'
// suites show it on the simulated platform's queues.)
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

// Real background threads: the pictures are read while the main thread
// re-tags half of the views and drops a quarter; every view ends with the
// picture of the tag it carries last, a dropped one is left alone, and the
// views are only touched on the main thread.
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
