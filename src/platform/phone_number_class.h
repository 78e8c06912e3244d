// The platform's contact-number class, "CNPhoneNumber": made from any text
// with the class method phoneNumberWithStringValue:, it gives the text's
// display form with formattedStringValue, formatted as the user types it in
// the region of the device's locale (China when the locale names none).
//
// The Linux platform's process has the class; a simulated process has it
// only when a test registers it.
#pragma once

#include <string>
#include <string_view>

#include "platform/runtime/message.h"
#include "platform/runtime/object.h"

namespace zv::platform {

// The class and its selectors as typed messages, declared once: defined
// here, sent by the number utilities.
struct CNPhoneNumber {
  static constexpr std::string_view kName = "CNPhoneNumber";
  static constexpr rt::Message<rt::Id(std::string)> phoneNumberWithStringValue{
      kName, "phoneNumberWithStringValue:", true};
  static constexpr rt::Message<std::string()> formattedStringValue{
      kName, "formattedStringValue"};
  static constexpr rt::Message<std::string()> stringValue{kName, "stringValue"};
};

// Registers "CNPhoneNumber" in `runtime` (again: nothing changes).
void registerPhoneNumberClass(rt::Runtime& runtime);

// The display form of `text` for a region given as a two-letter code; the
// text unchanged when it is not valid UTF-8.
std::string formatPhoneNumber(std::string_view text, const std::string& region);

// The region of a locale name such as "zh_CN" or "en-US"; "CN" when the name
// carries none.
std::string regionOfLocale(std::string_view locale);

}  // namespace zv::platform
