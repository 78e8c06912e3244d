#include "search/avatar_loader.h"

#include "platform/process.h"
#include "search/address_book.h"

namespace zv {

void loadAvatarInBackground(const std::shared_ptr<ui::UIImageView>& view,
                            int tag, std::function<ui::ImagePtr()> load,
                            std::function<void(bool set)> done) {
  std::weak_ptr<ui::UIImageView> weakView = view;
  platform::Platform& platform = platform::current();
  platform.dispatchBackground([weakView, tag, load = std::move(load),
                               done = std::move(done), &platform]() mutable {
    ui::ImagePtr avatar = load();
    platform.dispatchMain([weakView, tag, avatar = std::move(avatar),
                           load = std::move(load), done = std::move(done)] {
      auto view = weakView.lock();
      // The cell may show another record by now.
      const bool set = view && view->tag() == tag && avatar;
      if (set) view->setImage(avatar);
      if (done) done(set);
    });
  });
}

void loadAvatarInBackground(const std::shared_ptr<ui::UIImageView>& view,
                            int tag, std::shared_ptr<ZVAddressBook> book,
                            int32_t recordId, platform::Size size,
                            std::function<void(bool set)> done) {
  loadAvatarInBackground(
      view, tag,
      [book = std::move(book), recordId, size] {
        return book->getAvatar(recordId, size);
      },
      std::move(done));
}

}  // namespace zv
