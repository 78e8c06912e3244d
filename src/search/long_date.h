// Dates as the contact facts show them: the long date style of a locale,
// without time, through ICU (the platform's date formatter with long date
// style and no time style).
#pragma once

#include <string>

namespace zv {

// `referenceSeconds` counts from 2001-01-01 00:00 UTC, as the platform's
// address book stores birthdays. The day is taken in UTC: a birthday is a
// calendar day stored as an instant, and reading it in the local zone would
// move it to the day before west of Greenwich. `locale` is an ICU/POSIX
// locale name ("en_US", "zh_CN", "de"). "" when the value cannot be
// formatted (not finite, or ICU fails).
std::string formatLongDate(double referenceSeconds, const std::string& locale);

}  // namespace zv
