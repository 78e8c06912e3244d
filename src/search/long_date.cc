#include "search/long_date.h"

#include <unicode/datefmt.h>
#include <unicode/locid.h>
#include <unicode/timezone.h>
#include <unicode/unistr.h>

#include <cmath>
#include <memory>

#include "platform/db/platform_schema.h"

namespace zv {

std::string formatLongDate(double referenceSeconds, const std::string& locale) {
  if (!std::isfinite(referenceSeconds)) return "";
  std::unique_ptr<icu::DateFormat> format(icu::DateFormat::createDateInstance(
      icu::DateFormat::kLong, icu::Locale::createCanonical(locale.c_str())));
  if (!format) return "";
  format->setTimeZone(*icu::TimeZone::getGMT());
  const UDate ms =
      (referenceSeconds + platform_schema::kReferenceDateOffset) * 1000.0;
  icu::UnicodeString text;
  format->format(ms, text);
  std::string out;
  text.toUTF8String(out);
  return out;
}

}  // namespace zv
