// NSIndexPath of the UI model: a row in a section of a table view. The UI
// model's tables have one section, so hosts answer for section 0.
#pragma once

#include <cstdint>

namespace zv::ui {

struct IndexPath {
  int64_t section = 0;
  int64_t row = 0;
  bool operator==(const IndexPath&) const = default;
};

}  // namespace zv::ui
