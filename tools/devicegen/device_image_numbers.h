// Phone numbers for generated device images: numbers of real Chinese
// numbering plans (mobile prefixes of the three carriers, fixed lines with
// their city's area code and subscriber length, service numbers) and a few
// foreign ones, each written in one of the mixed styles people type into an
// address book (+86, 0086, spaces, dashes, brackets, extensions).
#pragma once

#include <string>

#include "devicegen/device_image_random.h"

namespace zv::device_numbers {

// A number as stored in the address book; `dialable` is the same number
// reduced to the keypad characters 0-9 # * + , ; (what the searcher keeps).
struct Number {
  std::string text;
  std::string dialable;
};

// The 11 digits of a mobile number, e.g. "13912345678".
std::string mobileDigits(DeviceRandom& random);
// A fixed line in national form with its trunk 0, e.g. "02165521234".
std::string fixedDigits(DeviceRandom& random);
// A service number of a carrier, bank or hotline, e.g. "95555" or
// "4008201234".
std::string serviceDigits(DeviceRandom& random);

// The same numbers written in a randomly chosen style.
Number mobile(DeviceRandom& random);
Number fixed(DeviceRandom& random);
Number service(DeviceRandom& random);
// Hong Kong, United States or United Kingdom, in international form.
Number foreign(DeviceRandom& random);

// Writes a given number in a randomly chosen style of its kind.
Number styleMobile(const std::string& digits, DeviceRandom& random);
Number styleService(const std::string& digits, DeviceRandom& random);

// Keeps the keypad's dialable characters of `text`.
std::string dialable(const std::string& text);

}  // namespace zv::device_numbers
