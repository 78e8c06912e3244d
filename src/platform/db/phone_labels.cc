#include "platform/db/phone_labels.h"

#include <array>
#include <utility>

#include "platform/platform.h"

namespace zv {
namespace {

// The platform's built-in label keys and their English texts.
constexpr std::array<std::pair<std::string_view, std::string_view>, 15>
    kBuiltInLabels{{
        {"_$!<Mobile>!$_", "mobile"},
        {"iPhone", "iPhone"},
        {"_$!<Home>!$_", "home"},
        {"_$!<Work>!$_", "work"},
        {"_$!<Main>!$_", "main"},
        {"_$!<HomeFAX>!$_", "home fax"},
        {"_$!<WorkFAX>!$_", "work fax"},
        {"_$!<OtherFAX>!$_", "other fax"},
        {"_$!<Pager>!$_", "pager"},
        {"_$!<Other>!$_", "other"},
        {"_$!<HomePage>!$_", "home page"},
        {"_$!<Assistant>!$_", "assistant"},
        {"_$!<Car>!$_", "car"},
        {"_$!<Radio>!$_", "radio"},
        {"_$!<Company>!$_", "company"},
    }};

constexpr std::string_view kKeyOpen = "_$!<";
constexpr std::string_view kKeyClose = ">!$_";

}  // namespace

std::string copyLocalizedLabel(std::string_view label) {
  for (const auto& [key, english] : kBuiltInLabels)
    if (key == label) return platform::current().localizedString(english);
  if (label.size() > kKeyOpen.size() + kKeyClose.size() &&
      label.starts_with(kKeyOpen) && label.ends_with(kKeyClose))
    return std::string(label.substr(
        kKeyOpen.size(), label.size() - kKeyOpen.size() - kKeyClose.size()));
  return std::string(label);
}

}  // namespace zv
