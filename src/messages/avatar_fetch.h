// A contact picture fetched off the main thread for a list cell: the fetch
// runs on a global background queue, and the picture is set on the image
// view on the main queue only if the view still wants it (its tag still
// names the same contact; the cell may have been reused meanwhile). The
// view is held weakly, so a cell that went away is simply skipped.
#pragma once

#include <functional>
#include <memory>

#include "platform/ui/label.h"

namespace zv {

void fetchAvatarInBackground(
    const std::shared_ptr<ui::UIImageView>& view,
    std::function<ui::ImagePtr()> fetch,
    std::function<bool(const ui::UIImageView&)> stillWanted);

}  // namespace zv
