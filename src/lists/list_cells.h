// Small pieces that the Recents and Contacts rows share: leading blanks that
// move a text clear of an avatar, comparing font sizes, and the round avatar
// on the left of a row. (Joining an addition to a label is
// core/area_label.h's; the avatar views' tag and background loading are
// search/avatar_loader.h's.)
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/ui/table_view.h"
#include "search/address_book.h"

namespace zv::lists {

// `text` with `count` leading blanks, unless it already begins with them.
std::string withLeadingBlanks(std::string_view text, int count);

// Whether two font sizes are the same point size.
bool sameSize(double a, double b);

// `table`'s image view laid out as a round avatar `side` points wide,
// `left` points in and centred vertically, shown and tagged `tag`.
std::shared_ptr<ui::UIImageView> roundAvatarView(ui::UITableViewCell& table,
                                                 double left, double side,
                                                 int tag);

// Shows `record`'s picture at `size` on `image` (tagged `tag`): from the
// cache at once when it is there, else the placeholder now and the picture
// from the background queue; only the placeholder when `picture` is false.
void showAvatar(const std::shared_ptr<ui::UIImageView>& image, int tag,
                const std::shared_ptr<ZVAddressBook>& book,
                std::shared_ptr<const ABPersonRecord> record,
                platform::Size size, bool picture);

}  // namespace zv::lists
