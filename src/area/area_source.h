// The text form of an area database, which `zorvel areadb build` compiles
// and `zorvel areadb dump` writes back. UTF-8, one item per line:
//
//   # comment                      (and blank lines) ignored
//   @country<TAB>86                header settings: version, separator,
//   @trunk<TAB>0                   access, access2, country, trunk (digits,
//   @separator<TAB>\x20            at most 4), min, max (digits counted)
//   1391234<TAB>江苏省南京市<TAB>中国移动
//   755<TAB>广东省深圳市<TAB>固话<TAB>long
//   10086<TAB>中国移动客服<TAB><TAB>len=5
//
// A record line is a number prefix of 1 to 8 digits, its location text, its
// line-type text (either may be empty, not both) and optional flags
// separated by blanks: "long" (answer only numbers written with the country
// code or the trunk prefix; it takes effect when every record sharing the
// prefix's first four digits has it) and "len=N" (a service number: the
// location answers only numbers of exactly N digits, 4 to 8 - shorter
// numbers are looked up as 4 digits - and only when the caller allows it;
// no line type). Texts may use the escapes \\, \t, \n and \xHH.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace zv::area {

struct Header {
  uint16_t version = 1;
  std::string separator = " ";
  std::string access, access2, country, trunk;
  uint16_t minDigits = 1;
  uint16_t maxDigits = 15;
};

struct Record {
  std::string prefix;
  std::string location;
  std::string type;
  bool longForm = false;
  int exactLength = 0;  // 0: any length
  int line = 0;         // source line, for messages (0 when not from text)
};

struct Source {
  Header header;
  std::vector<Record> records;
};

// A problem in a source, reported as "FILE:LINE: message".
class SourceError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Parses source text; `name` is used in messages. Throws SourceError at the
// first bad line (bad header value, malformed prefix, duplicate prefix, bad
// flag, missing texts).
Source parseSource(std::string_view text, const std::string& name);
// Writes `source` in the text form (header first, records as given).
std::string formatSource(const Source& source);

}  // namespace zv::area
