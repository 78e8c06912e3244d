#include "messages/avatar_fetch.h"

#include "platform/platform.h"

namespace zv {

void fetchAvatarInBackground(
    const std::shared_ptr<ui::UIImageView>& view,
    std::function<ui::ImagePtr()> fetch,
    std::function<bool(const ui::UIImageView&)> stillWanted) {
  std::weak_ptr<ui::UIImageView> weak = view;
  auto& platform = platform::current();
  platform.dispatchBackground([weak, fetch = std::move(fetch),
                               stillWanted = std::move(stillWanted),
                               &platform] {
    ui::ImagePtr avatar = fetch();
    if (!avatar) return;
    platform.dispatchMain([weak, avatar, stillWanted] {
      auto v = weak.lock();
      if (v && stillWanted(*v)) v->setImage(avatar);
    });
  });
}

}  // namespace zv
