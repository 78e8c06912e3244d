// GCC 12's -Wmaybe-uninitialized reports std::variant's copy and move of
// a Value's storage, which read only the alternative that was written: a
// false positive of that release, off in this one file (see value.h).
#if defined(__GNUC__) && !defined(__clang__) && __GNUC__ == 12
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif

#include "platform/value.h"

#include <cctype>
#include <cerrno>
#include <charconv>
#include <climits>
#include <cmath>
#include <cstdlib>

namespace zv {

Value::Value(const Value& other) = default;
Value::Value(Value&& other) noexcept = default;
Value& Value::operator=(const Value& other) = default;
Value& Value::operator=(Value&& other) noexcept = default;
Value::~Value() = default;

namespace {

const char* skipSpace(const char* p) {
  while (*p == ' ' || *p == '\t' || *p == '\n' || *p == '\r') ++p;
  return p;
}

// The string form of boolValue: after blanks, an optional sign and leading
// zeros, the first character decides: Y, y, T, t or a digit 1-9 mean true.
bool stringBool(const std::string& s) {
  const char* p = skipSpace(s.c_str());
  if (*p == '+' || *p == '-') ++p;
  while (*p == '0') ++p;
  return *p == 'Y' || *p == 'y' || *p == 'T' || *p == 't' ||
         (*p >= '1' && *p <= '9');
}

int64_t stringLongLong(const std::string& s) {
  errno = 0;
  long long v = std::strtoll(skipSpace(s.c_str()), nullptr, 10);
  return v;
}

// The string form of doubleValue: decimal text only, read as far as it goes
// ("1.5kg" is 1.5) and the same under every locale; hexadecimal, "inf" and
// "nan" (which strtod would take) are 0, out-of-range values saturate.
double stringDouble(const std::string& s) {
  const char* p = skipSpace(s.c_str());
  const char* end = s.c_str() + s.size();
  double sign = 1;
  if (*p == '+' || *p == '-') sign = *p++ == '-' ? -1 : 1;
  const bool digits =
      std::isdigit(static_cast<unsigned char>(*p)) ||
      (*p == '.' && std::isdigit(static_cast<unsigned char>(p[1])));
  if (!digits) return 0;
  double v = 0;
  auto [ptr, ec] = std::from_chars(p, end, v, std::chars_format::general);
  if (ec == std::errc::result_out_of_range) {
    // Too large or too small for a double: strtod saturates to infinity
    // or zero by the size of the exponent.
    return sign * std::strtod(p, nullptr);
  }
  return ec == std::errc() ? sign * v : 0;
}

int64_t clampDouble(double d) {
  if (std::isnan(d)) return 0;
  if (d >= 9.2233720368547758e18) return INT64_MAX;
  if (d <= -9.2233720368547758e18) return INT64_MIN;
  return static_cast<int64_t>(d);
}

}  // namespace

bool Value::boolValue() const {
  if (auto b = std::get_if<bool>(&v_)) return *b;
  if (auto i = std::get_if<int64_t>(&v_)) return *i != 0;
  if (auto d = std::get_if<double>(&v_)) return *d != 0.0;
  if (auto s = std::get_if<std::string>(&v_)) return stringBool(*s);
  return false;
}

int64_t Value::longLongValue() const {
  if (auto b = std::get_if<bool>(&v_)) return *b ? 1 : 0;
  if (auto i = std::get_if<int64_t>(&v_)) return *i;
  if (auto d = std::get_if<double>(&v_)) return clampDouble(*d);
  if (auto s = std::get_if<std::string>(&v_)) return stringLongLong(*s);
  return 0;
}

int32_t Value::intValue() const {
  if (auto s = std::get_if<std::string>(&v_)) {
    // The string conversion saturates at the 32-bit limits.
    int64_t v = stringLongLong(*s);
    if (v > INT32_MAX) return INT32_MAX;
    if (v < INT32_MIN) return INT32_MIN;
    return static_cast<int32_t>(v);
  }
  // Numbers truncate to their low 32 bits like a C cast.
  return static_cast<int32_t>(static_cast<uint32_t>(longLongValue()));
}

double Value::doubleValue() const {
  if (auto b = std::get_if<bool>(&v_)) return *b ? 1.0 : 0.0;
  if (auto i = std::get_if<int64_t>(&v_)) return static_cast<double>(*i);
  if (auto d = std::get_if<double>(&v_)) return *d;
  if (auto s = std::get_if<std::string>(&v_)) return stringDouble(*s);
  return 0.0;
}

std::string Value::stringValue() const {
  if (auto s = std::get_if<std::string>(&v_)) return *s;
  if (auto b = std::get_if<bool>(&v_)) return *b ? "1" : "0";
  if (auto i = std::get_if<int64_t>(&v_)) return std::to_string(*i);
  if (auto d = std::get_if<double>(&v_)) {
    char buf[64];
    std::snprintf(buf, sizeof buf, "%.17g", *d);
    // Prefer the shortest form that reads back the same.
    for (int prec = 1; prec <= 17; ++prec) {
      char shorter[64];
      std::snprintf(shorter, sizeof shorter, "%.*g", prec, *d);
      if (std::strtod(shorter, nullptr) == *d) return shorter;
    }
    return buf;
  }
  return "";
}

const Value& Value::operator[](std::string_view key) const {
  static const Value kNull;
  if (auto d = std::get_if<Dict>(&v_)) {
    auto it = d->find(key);
    if (it != d->end()) return it->second;
  }
  return kNull;
}

}  // namespace zv
