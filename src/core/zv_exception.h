// ZVException: the failure alert the guard shows in Phone, Contacts and
// Messages, and the bug-report mail its "Report bug" button composes.
#pragma once

#include <string>

#include "platform/platform.h"

namespace zv {

class ZVException {
 public:
  // Where bug reports go, and the version quoted in them.
  static constexpr const char* kMaintainers = "bugs@zorvel.dev";
  static constexpr const char* kVersion = "1.0.0 alpha7";

  // Shows the modal alert "Zorvel Exception" with `message`, buttons "Close"
  // (cancel) and "Report bug"; its delegate is alertView below.
  static void showException(const std::string& message);
  // The alert's delegate: on "Report bug" opens the percent-escaped
  // "mailto:" link with the message, version and device.
  static void alertView(const platform::Alert& alert, int buttonIndex);
  // The unescaped mail link for a message, as alertView composes it.
  static std::string bugReportText(const std::string& message);
};

// Percent-escapes text the way the platform's
// stringByAddingPercentEscapesUsingEncoding: does for ASCII: every byte that
// is not allowed in a URL (and every non-ASCII byte) becomes %XX; the
// reserved characters ":/?&=#%" and friends stay.
std::string addingPercentEscapes(std::string_view text);

}  // namespace zv
