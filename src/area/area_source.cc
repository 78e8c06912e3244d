#include "area/area_source.h"

#include <charconv>
#include <map>

namespace zv::area {

namespace {

std::string_view trimEnd(std::string_view s) {
  while (!s.empty() && (s.back() == '\r' || s.back() == ' '))
    s.remove_suffix(1);
  return s;
}

bool allDigits(std::string_view s) {
  for (char c : s)
    if (c < '0' || c > '9') return false;
  return true;
}

int hexValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

std::vector<std::string_view> split(std::string_view s, char sep) {
  std::vector<std::string_view> parts;
  size_t start = 0;
  for (;;) {
    size_t at = s.find(sep, start);
    parts.push_back(s.substr(start, at - start));
    if (at == std::string_view::npos) return parts;
    start = at + 1;
  }
}

class Parser {
 public:
  Parser(const std::string& name) : name_(name) {}

  [[noreturn]] void fail(const std::string& message) const {
    throw SourceError(name_ + ":" + std::to_string(line_) + ": " + message);
  }

  std::string unescape(std::string_view s) const {
    std::string out;
    for (size_t i = 0; i < s.size(); ++i) {
      if (s[i] == '\0') fail("texts cannot hold a NUL byte");
      if (s[i] != '\\') {
        out += s[i];
        continue;
      }
      if (i + 1 >= s.size()) fail("dangling backslash");
      char c = s[++i];
      if (c == '\\') {
        out += '\\';
      } else if (c == 't') {
        out += '\t';
      } else if (c == 'n') {
        out += '\n';
      } else if (c == 'x' && i + 2 < s.size() && hexValue(s[i + 1]) >= 0 &&
                 hexValue(s[i + 2]) >= 0) {
        char byte = char(hexValue(s[i + 1]) * 16 + hexValue(s[i + 2]));
        if (byte == 0) fail("texts cannot hold a NUL byte");
        out += byte;
        i += 2;
      } else {
        fail(std::string("unknown escape \\") + c);
      }
    }
    return out;
  }

  uint16_t number(std::string_view s, unsigned low, unsigned high) const {
    unsigned value = 0;
    auto [end, ec] = std::from_chars(s.data(), s.data() + s.size(), value);
    if (ec != std::errc() || end != s.data() + s.size() || value < low ||
        value > high)
      fail("expected a number from " + std::to_string(low) + " to " +
           std::to_string(high) + ", got \"" + std::string(s) + "\"");
    return uint16_t(value);
  }

  void headerLine(std::string_view line, Header& h) {
    size_t tab = line.find('\t');
    std::string_view key =
        line.substr(1, tab == line.npos ? line.npos : tab - 1);
    std::string value =
        tab == line.npos ? std::string() : unescape(line.substr(tab + 1));
    auto digits = [&](std::string& field) {
      if (value.size() > 4 || !allDigits(value))
        fail("@" + std::string(key) + " takes at most 4 digits");
      field = value;
    };
    if (key == "version") {
      h.version = number(value, 0, 2);
    } else if (key == "separator") {
      if (value.size() > 35) fail("@separator is longer than 35 bytes");
      h.separator = value;
    } else if (key == "access") {
      digits(h.access);
    } else if (key == "access2") {
      digits(h.access2);
    } else if (key == "country") {
      digits(h.country);
    } else if (key == "trunk") {
      digits(h.trunk);
    } else if (key == "min") {
      h.minDigits = number(value, 1, 65535);
    } else if (key == "max") {
      h.maxDigits = number(value, 1, 65535);
    } else {
      fail("unknown header setting @" + std::string(key));
    }
  }

  Record recordLine(std::string_view line) {
    auto fields = split(line, '\t');
    if (fields.size() < 3 || fields.size() > 4)
      fail("expected PREFIX<TAB>LOCATION<TAB>TYPE[<TAB>FLAGS]");
    Record r;
    r.line = line_;
    r.prefix = std::string(fields[0]);
    if (r.prefix.empty() || r.prefix.size() > 8 || !allDigits(r.prefix))
      fail("prefix must be 1 to 8 digits, got \"" + r.prefix + "\"");
    r.location = unescape(fields[1]);
    r.type = unescape(fields[2]);
    if (fields.size() == 4) {
      for (std::string_view flag : split(fields[3], ' ')) {
        if (flag.empty()) continue;
        if (flag == "long") {
          r.longForm = true;
        } else if (flag.substr(0, 4) == "len=") {
          r.exactLength = number(flag.substr(4), 4, 8);
        } else {
          fail("unknown flag \"" + std::string(flag) + "\"");
        }
      }
    }
    if (r.exactLength && !r.type.empty())
      fail("a len= record has no line type");
    if (r.location.empty() && r.type.empty() && !r.exactLength)
      fail("record has neither location nor type");
    return r;
  }

  Source parse(std::string_view text) {
    Source source;
    std::map<std::string, int> seen;
    for (std::string_view raw : split(text, '\n')) {
      ++line_;
      std::string_view line = trimEnd(raw);
      if (line.empty() || line[0] == '#') continue;
      if (line[0] == '@') {
        headerLine(line, source.header);
        continue;
      }
      Record r = recordLine(line);
      auto [it, fresh] = seen.emplace(r.prefix, line_);
      if (!fresh)
        fail("prefix " + r.prefix + " already defined on line " +
             std::to_string(it->second));
      source.records.push_back(std::move(r));
    }
    const Header& h = source.header;
    if (h.minDigits > h.maxDigits) fail("@min is larger than @max");
    return source;
  }

 private:
  const std::string& name_;
  int line_ = 0;
};

std::string escape(std::string_view s) {
  static const char* hex = "0123456789abcdef";
  std::string out;
  for (size_t i = 0; i < s.size(); ++i) {
    unsigned char c = s[i];
    bool edgeBlank = c == ' ' && (i == 0 || i + 1 == s.size());
    if (c == '\\') {
      out += "\\\\";
    } else if (c == '\t') {
      out += "\\t";
    } else if (c == '\n') {
      out += "\\n";
    } else if (c < 0x20 || c == 0x7f || edgeBlank) {
      out += "\\x";
      out += hex[c >> 4];
      out += hex[c & 15];
    } else {
      out += char(c);
    }
  }
  return out;
}

}  // namespace

Source parseSource(std::string_view text, const std::string& name) {
  return Parser(name).parse(text);
}

std::string formatSource(const Source& source) {
  const Header& h = source.header;
  std::string out;
  out += "@version\t" + std::to_string(h.version) + "\n";
  out += "@separator\t" + escape(h.separator) + "\n";
  out += "@access\t" + h.access + "\n";
  out += "@access2\t" + h.access2 + "\n";
  out += "@country\t" + h.country + "\n";
  out += "@trunk\t" + h.trunk + "\n";
  out += "@min\t" + std::to_string(h.minDigits) + "\n";
  out += "@max\t" + std::to_string(h.maxDigits) + "\n";
  for (const Record& r : source.records) {
    out += r.prefix + "\t" + escape(r.location) + "\t" + escape(r.type);
    std::string flags;
    if (r.longForm) flags = "long";
    if (r.exactLength) {
      if (!flags.empty()) flags += ' ';
      flags += "len=" + std::to_string(r.exactLength);
    }
    if (!flags.empty()) out += "\t" + flags;
    out += "\n";
  }
  return out;
}

}  // namespace zv::area
