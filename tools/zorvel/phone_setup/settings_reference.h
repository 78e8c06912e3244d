// What each settings key means and which values make sense, beside the
// types and defaults the settings classes declare: the text of the
// settings-keys reference page and the ranges `zorvel settings set`
// accepts. Every key of the catalogue has an entry (a test checks).
#pragma once

#include <optional>
#include <string_view>

namespace zv::cli {

struct KeyReference {
  std::string_view key;
  std::string_view meaning;
  // Bounds of an integer or real key (inclusive); none: any value of its
  // type.
  std::optional<double> min, max;
};

// The entry of `key`, or nullptr.
const KeyReference* keyReference(std::string_view key);

}  // namespace zv::cli
