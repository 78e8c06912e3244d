// Loading a contact's picture for a list cell without holding up the main
// thread. The cell's image view carries a tag naming the record it shows;
// lists reuse cells, so by the time the picture is ready the view may show
// another record, and the picture is set only if the tag still matches.
//
// The picture is read and scaled by ZVAddressBook (whose cache is safe from
// any thread) on the platform's background queue; the view is touched only
// on the main queue. The loader keeps the view weakly: a view that is gone
// by then is left alone.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "platform/platform.h"
#include "platform/ui/label.h"

namespace zv {

class ZVAddressBook;

// The tag of an image view that shows record `recordId` in the Recents,
// Contacts and Messages lists: the record id with bit 31 set.
constexpr int avatarViewTag(int32_t recordId) {
  return static_cast<int>(static_cast<uint32_t>(recordId) | 0x80000000u);
}
// The record id of such a tag (bit 31 cleared).
constexpr int32_t avatarViewRecord(int tag) {
  return static_cast<int32_t>(static_cast<uint32_t>(tag) & ~0x80000000u);
}

// Runs `load` on the background queue; back on the main queue, sets its
// picture on `view` when the view still exists, still carries `tag` and a
// picture came back. `done`, when given, runs on the main queue after that
// with whether the picture was set. `load` itself is let go of on the main
// queue too, so whatever it holds (the service) never goes on the
// background thread.
void loadAvatarInBackground(const std::shared_ptr<ui::UIImageView>& view,
                            int tag, std::function<ui::ImagePtr()> load,
                            std::function<void(bool set)> done = {});

// The same with `book`'s picture of `recordId` at `size`.
void loadAvatarInBackground(const std::shared_ptr<ui::UIImageView>& view,
                            int tag, std::shared_ptr<ZVAddressBook> book,
                            int32_t recordId, platform::Size size,
                            std::function<void(bool set)> done = {});

}  // namespace zv
