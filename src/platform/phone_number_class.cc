#include "platform/phone_number_class.h"

#include <glib.h>
#include <phonenumbers/asyoutypeformatter.h>
#include <phonenumbers/phonenumberutil.h>

#include <memory>

#include "platform/platform.h"

namespace zv::platform {
namespace {

constexpr char kClassName[] = "CNPhoneNumber";
constexpr char kStringIvar[] = "stringValue";

}  // namespace

std::string regionOfLocale(std::string_view locale) {
  // "zh_Hans_CN", "en_US", "en-GB@calendar=..." : the last two-letter part.
  locale = locale.substr(0, locale.find('@'));
  std::string region;
  size_t start = 0;
  while (start <= locale.size()) {
    size_t end = locale.find_first_of("_-", start);
    if (end == std::string_view::npos) end = locale.size();
    std::string_view part = locale.substr(start, end - start);
    if (start > 0 && part.size() == 2 && g_ascii_isalpha(part[0]) &&
        g_ascii_isalpha(part[1])) {
      region = {g_ascii_toupper(part[0]), g_ascii_toupper(part[1])};
    }
    start = end + 1;
  }
  return region.empty() ? "CN" : region;
}

std::string formatPhoneNumber(std::string_view text,
                              const std::string& region) {
  if (!g_utf8_validate(text.data(), static_cast<gssize>(text.size()),
                       nullptr)) {
    return std::string(text);
  }
  auto* util = i18n::phonenumbers::PhoneNumberUtil::GetInstance();
  std::unique_ptr<i18n::phonenumbers::AsYouTypeFormatter> formatter(
      util->GetAsYouTypeFormatter(region));
  std::string result;
  const char* end = text.data() + text.size();
  for (const char* p = text.data(); p < end; p = g_utf8_next_char(p))
    formatter->InputDigit(
        static_cast<i18n::phonenumbers::char32>(g_utf8_get_char(p)), &result);
  return result;
}

void registerPhoneNumberClass(rt::Runtime& runtime) {
  rt::Class* cls = runtime.getClass(kClassName);
  if (cls) return;
  cls = runtime.registerClass(kClassName);
  rt::define(runtime, CNPhoneNumber::phoneNumberWithStringValue,
             [cls](const rt::Id&, std::string text) -> rt::Id {
               auto number = rt::create(cls);
               number->setIvar(kStringIvar, std::move(text));
               return number;
             });
  rt::define(runtime, CNPhoneNumber::formattedStringValue,
             [](const rt::Id& self) -> std::string {
               auto text = rt::getIvar<std::string>(self, kStringIvar);
               if (!text) return "";
               return formatPhoneNumber(
                   *text, regionOfLocale(current().device().locale));
             });
  rt::define(runtime, CNPhoneNumber::stringValue,
             [](const rt::Id& self) -> std::string {
               return rt::getIvar<std::string>(self, kStringIvar).value_or("");
             });
}

}  // namespace zv::platform
