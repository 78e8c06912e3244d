// The springboard's notification bulletins ("BBBulletin": `title`,
// `sectionID` such as "com.apple.mobilephone", `context`, a dictionary whose
// "contactInfo" holds the caller's number for a call, and `date`, nullopt
// when it has none) and presenting one as a banner. Presenting reads the
// title and section through the runtime, so a replaced `title` is what the
// banner shows, and the platform records the banner (Platform::showBanner).
#pragma once

#include <optional>
#include <string>

#include "platform/runtime/message.h"
#include "platform/runtime/object.h"
#include "platform/value.h"

namespace zv::ui {

namespace msg {
struct BBBulletin {
  static constexpr std::string_view kName = "BBBulletin";
  static constexpr rt::Message<std::string()> title{kName, "title"};
  static constexpr rt::Message<std::string()> sectionID{kName, "sectionID"};
  static constexpr rt::Message<Dict()> context{kName, "context"};
  static constexpr rt::Message<std::optional<Date>()> date{kName, "date"};
};
}  // namespace msg

inline constexpr std::string_view kBulletinClass = msg::BBBulletin::kName;

struct BulletinContent {
  std::string title;
  std::string sectionID;
  Dict context;
  std::optional<Date> date;  // seconds since 2001, as the platform's NSDate
};

// Registers BBBulletin in the current process (again: nothing changes).
void registerBulletinClass(rt::Runtime& runtime);

// A bulletin in the current process.
rt::Id makeBulletin(BulletinContent content);

// Shows the bulletin's banner: its `title` and `sectionID` as the runtime
// answers them. Nothing for nil.
void presentBulletin(const rt::Id& bulletin);

}  // namespace zv::ui
