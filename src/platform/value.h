// A property-list value: the data model of the platform's settings and data
// files (boolean, integer, real, string, data, date, array, dictionary).
//
// Conversions follow the platform's number and string objects, because the
// settings pane may store any key with any type: a string "1" reads as true,
// "0.8" as the float 0.8, a real 2.7 as the integer 2. A missing value
// (null) converts to false / 0 / "".
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace zv {

class Value;
using Array = std::vector<Value>;
using Dict = std::map<std::string, Value, std::less<>>;

// Raw bytes of a <data> entry.
struct Data {
  std::string bytes;
  bool operator==(const Data&) const = default;
};

// A <date> entry: seconds since 2001-01-01 00:00:00 UTC.
struct Date {
  double seconds = 0;
  bool operator==(const Date&) const = default;
};

class Value {
 public:
  using Storage = std::variant<std::monostate, bool, int64_t, double,
                               std::string, Data, Date, Array, Dict>;

  Value() = default;
  Value(bool b) : v_(b) {}
  Value(int i) : v_(int64_t{i}) {}
  Value(int64_t i) : v_(i) {}
  Value(double d) : v_(d) {}
  Value(const char* s) : v_(std::string(s)) {}
  Value(std::string s) : v_(std::move(s)) {}
  Value(std::string_view s) : v_(std::string(s)) {}
  Value(Data d) : v_(std::move(d)) {}
  Value(Date d) : v_(d) {}
  Value(Array a) : v_(std::move(a)) {}
  Value(Dict d) : v_(std::move(d)) {}
  // Copies and moves are defined in value.cc: inlined into every user,
  // std::variant's copy and move make GCC 12 warn that an alternative may
  // be read uninitialized (-Wmaybe-uninitialized, a false positive of
  // that release), so only value.cc compiles them.
  Value(const Value& other);
  Value(Value&& other) noexcept;
  Value& operator=(const Value& other);
  Value& operator=(Value&& other) noexcept;
  ~Value();

  bool isNull() const { return v_.index() == 0; }
  bool isBool() const { return std::holds_alternative<bool>(v_); }
  bool isInteger() const { return std::holds_alternative<int64_t>(v_); }
  bool isReal() const { return std::holds_alternative<double>(v_); }
  bool isNumber() const { return isBool() || isInteger() || isReal(); }
  bool isString() const { return std::holds_alternative<std::string>(v_); }
  bool isData() const { return std::holds_alternative<Data>(v_); }
  bool isDate() const { return std::holds_alternative<Date>(v_); }
  bool isArray() const { return std::holds_alternative<Array>(v_); }
  bool isDict() const { return std::holds_alternative<Dict>(v_); }

  // The platform's boolValue / intValue / longLongValue / floatValue /
  // doubleValue of a number or a string; other kinds give false or 0.
  bool boolValue() const;
  int32_t intValue() const;
  int64_t longLongValue() const;
  float floatValue() const { return static_cast<float>(doubleValue()); }
  double doubleValue() const;
  // Text of a string, the decimal form of a number, else "".
  std::string stringValue() const;

  // Typed access; each returns nullptr when the value is of another kind.
  const std::string* string() const { return std::get_if<std::string>(&v_); }
  const Data* data() const { return std::get_if<Data>(&v_); }
  const Date* date() const { return std::get_if<Date>(&v_); }
  const Array* array() const { return std::get_if<Array>(&v_); }
  const Dict* dict() const { return std::get_if<Dict>(&v_); }
  Array* array() { return std::get_if<Array>(&v_); }
  Dict* dict() { return std::get_if<Dict>(&v_); }

  // Dictionary lookup; null when this is not a dictionary or has no such key.
  const Value& operator[](std::string_view key) const;

  const Storage& storage() const { return v_; }
  bool operator==(const Value& other) const { return v_ == other.v_; }

 private:
  Storage v_;
};

}  // namespace zv
