#include "devicegen/device_image_numbers.h"

#include <algorithm>
#include <initializer_list>
#include <string_view>
#include <utility>

#include "core/number_utils.h"

namespace zv::device_numbers {
namespace {

// Mobile prefixes of China Mobile, China Unicom and China Telecom.
constexpr const char* kMobilePrefixes[] = {
    "134", "135", "136", "137", "138", "139", "147", "150", "151", "152",
    "157", "158", "159", "178", "182", "183", "184", "187", "188", "198",
    "130", "131", "132", "145", "155", "156", "166", "175", "176", "185",
    "186", "133", "149", "153", "173", "177", "180", "181", "189", "199"};

struct AreaCode {
  const char* code;  // without the trunk 0
  int subscriberDigits;
};
// Large cities have 8-digit subscriber numbers, some smaller ones 7.
constexpr AreaCode kAreaCodes[] = {
    {"10", 8},  {"21", 8},  {"22", 8},  {"23", 8},  {"20", 8},  {"24", 8},
    {"25", 8},  {"27", 8},  {"28", 8},  {"29", 8},  {"755", 8}, {"571", 8},
    {"512", 8}, {"532", 8}, {"591", 8}, {"731", 8}, {"371", 8}, {"531", 8},
    {"451", 8}, {"871", 8}, {"851", 8}, {"898", 8}, {"769", 8}, {"757", 8},
    {"592", 7}, {"351", 7}, {"471", 7}, {"931", 7}, {"951", 7}, {"971", 7}};

constexpr const char* kServiceNumbers[] = {
    "10086", "10010", "10000", "95555", "95588", "95533", "95566",
    "95599", "12306", "95338", "95511", "95010", "12315", "12345"};

// `count` random digits, the first one between `firstMin` and `firstMax`.
std::string digits(DeviceRandom& random, int count, char firstMin = '0',
                   char firstMax = '9') {
  std::string out;
  for (int i = 0; i < count; ++i) {
    out += static_cast<char>(i == 0 ? random.uniform(firstMin, firstMax)
                                    : random.uniform('0', '9'));
  }
  return out;
}

Number make(std::string text) {
  std::string d = dialable(text);
  return {std::move(text), std::move(d)};
}

// "13912345678" as "139<sep>1234<sep>5678".
std::string grouped(std::string_view d, const char* sep) {
  return std::string(d.substr(0, 3)) + sep + std::string(d.substr(3, 4)) + sep +
         std::string(d.substr(7));
}

// Splits a national fixed number "0" + area + subscriber.
void splitFixed(const std::string& national, std::string& area,
                std::string& subscriber) {
  for (const AreaCode& a : kAreaCodes) {
    std::string_view code = a.code;
    if (national.compare(1, code.size(), code) == 0 &&
        national.size() == 1 + code.size() + a.subscriberDigits) {
      area = a.code;
      subscriber = national.substr(1 + code.size());
      return;
    }
  }
  area = national.substr(1, 2);
  subscriber = national.substr(3);
}

// Writes `style`, replacing each of its placeholder letters by its text.
std::string expand(std::string_view style,
                   std::initializer_list<std::pair<char, std::string>> parts) {
  std::string out;
  for (char c : style) {
    auto part = std::find_if(parts.begin(), parts.end(),
                             [c](const auto& p) { return p.first == c; });
    if (part == parts.end()) {
      out += c;
    } else {
      out += part->second;
    }
  }
  return out;
}

}  // namespace

std::string dialable(const std::string& text) {
  std::string out;
  for (char c : text)
    if (isDialable(c)) out += c;
  return out;
}

std::string mobileDigits(DeviceRandom& random) {
  return random.pick(kMobilePrefixes) + digits(random, 8);
}

std::string fixedDigits(DeviceRandom& random) {
  const AreaCode& area = random.pick(kAreaCodes);
  return std::string("0") + area.code +
         digits(random, area.subscriberDigits, '2', '8');
}

std::string serviceDigits(DeviceRandom& random) {
  if (random.chance(0.6)) return random.pick(kServiceNumbers);
  return (random.chance(0.7) ? "400" : "800") + digits(random, 7, '1');
}

Number styleMobile(const std::string& d, DeviceRandom& random) {
  // Plain digits are the most common way a number is saved.
  constexpr const char* kStyles[] = {"M", "M",     "M",    "G",       "G",
                                     "D", "+86 G", "+86M", "(+86) D", "0086 G"};
  return make(
      expand(random.pick(kStyles),
             {{'M', d}, {'G', grouped(d, " ")}, {'D', grouped(d, "-")}}));
}

Number mobile(DeviceRandom& random) {
  return styleMobile(mobileDigits(random), random);
}

Number fixed(DeviceRandom& random) {
  std::string national = fixedDigits(random);
  std::string area, sub;
  splitFixed(national, area, sub);
  size_t half = sub.size() - 4;
  std::string spaced = sub.substr(0, half) + " " + sub.substr(half);
  constexpr const char* kStyles[] = {"0A-S",    "(0A) P", "0A P", "+86 A P",
                                     "+86-A-S", "0AS",    "(0A)S"};
  std::string text =
      expand(random.pick(kStyles), {{'A', area}, {'S', sub}, {'P', spaced}});
  // Switchboards: a pause and an extension.
  if (random.chance(0.05)) text += "," + digits(random, 3, '1');
  return make(std::move(text));
}

Number styleService(const std::string& d, DeviceRandom& random) {
  if (d.size() == 10 && random.chance(0.5))
    return make(d.substr(0, 3) + "-" + d.substr(3, 3) + "-" + d.substr(6));
  return make(d);
}

Number service(DeviceRandom& random) {
  return styleService(serviceDigits(random), random);
}

Number foreign(DeviceRandom& random) {
  switch (random.uniform(0, 2)) {
    case 0:
      return make("+852 " + digits(random, 4, '2') + " " + digits(random, 4));
    case 1:
      return make("+1 (" + digits(random, 3, '2') + ") 555-01" +
                  digits(random, 2));
    default:
      return make("+44 20 7946 0" + digits(random, 3));
  }
}

}  // namespace zv::device_numbers
