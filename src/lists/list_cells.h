// Small pieces that the Recents and Contacts rows share: joining an addition
// to a host label without repeating it, leading blanks that move a text
// clear of an avatar, the tag that marks which record an avatar view shows,
// and loading a picture in the background for a view that may be reused
// meanwhile.
//
// loadAvatarLater runs `load` on the platform's background queue and hands
// the picture to the main queue, where it is set only if the view still
// exists and still carries `tag`: a cell reused for another record in the
// meantime carries that record's tag and keeps its own picture. The view is
// only touched on the main queue.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/ui/label.h"

namespace zv::lists {

// `label` followed by `blanks` blanks and `addition`; nothing when the label
// already ends with the addition.
std::optional<std::string> joinedLabel(std::string_view label,
                                       std::string_view addition, int blanks);

// `text` with `count` leading blanks, unless it already begins with them.
std::string withLeadingBlanks(std::string_view text, int count);

// Whether two font sizes are the same point size.
bool sameSize(double a, double b);

// The tag of an avatar view showing `recordId`: the id with bit 31 set.
int avatarTag(int32_t recordId);

void loadAvatarLater(const std::shared_ptr<ui::UIImageView>& view, int tag,
                     std::function<ui::ImagePtr()> load);

}  // namespace zv::lists
