// The people and calls of a generated device image, decided before anything
// is written: contacts with Chinese, Western and company names, several
// numbers each in mixed styles, platform label keys, extra facts and
// pictures; and a call history of calls to and from contacts, unknown and
// withheld numbers, some missed. The same (counts, seed) always gives the
// same data.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace zv {

enum class DevicePicture { kNone, kJpeg, kPng };

struct DevicePhone {
  std::string text;      // as stored in ABMultiValue.value
  std::string dialable;  // keypad characters of `text`
  int label = 0;         // ABMultiValueLabel ROWID, 0 = no label (NULL)
};

struct DeviceEmail {
  std::string address;
  int label = 0;
};

struct DeviceContact {
  int64_t recordId = 0;
  int kind = 0;  // 0 person, 1 organization
  std::string first, last, middle;
  std::string organization, department, jobTitle, nickname, note;
  std::optional<int64_t> birthday;  // seconds since 2001, noon UTC
  int64_t created = 0;              // seconds since 2001
  std::vector<DevicePhone> phones;
  std::vector<DeviceEmail> emails;
  DevicePicture picture = DevicePicture::kNone;
  // The picture row at the thumbnail format is present but empty, and the
  // image follows at the next format (as left behind by some sync clients).
  bool emptyThumbnailRow = false;
  char initial = '#';   // letter drawn on the picture
  uint32_t colour = 0;  // picture colour index
};

struct DeviceCall {
  std::string address;  // dialable; empty for a withheld number
  double date = 0;      // seconds since 2001, fractional
  int duration = 0;     // seconds; 0 when never connected
  bool originated = false;
  bool answered = false;
  bool read = true;
  int64_t recordId = -1;  // the contact whose number it is, or -1
};

struct DevicePeople {
  std::vector<std::string> labels;      // ABMultiValueLabel values, ROWID 1...
  std::vector<DeviceContact> contacts;  // ascending record id
  std::vector<DeviceCall> calls;        // oldest first
};

// Record 1 is the owner's card (the sample settings point MyInfo at it).
// Record ids ascend with occasional gaps, as deletions leave them.
DevicePeople generateDevicePeople(int contacts, int calls, uint64_t seed);

// The newest call's date: 2014-11-20 10:00 UTC, in seconds since 2001.
// Fixed so that generated histories do not depend on the clock.
inline constexpr double kDeviceNow = 438170400.0;

}  // namespace zv
