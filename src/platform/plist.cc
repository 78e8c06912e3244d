#include "platform/plist.h"

#include <fcntl.h>
#include <plist/plist.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <memory>
#include <vector>

namespace zv::plist {
namespace {

// Reads a big-endian unsigned integer of `width` bytes at `at`; false when it
// runs past the end or is wider than 8 bytes.
bool readBig(const std::string& b, uint64_t at, uint64_t width, uint64_t& out) {
  if (width == 0 || width > 8 || at > b.size() || b.size() - at < width)
    return false;
  out = 0;
  for (uint64_t i = 0; i < width; ++i)
    out = (out << 8) | static_cast<unsigned char>(b[at + i]);
  return true;
}

// An object's count: the marker's low nibble, or an integer object after it
// when the nibble is 0xF. `at` moves past the count.
bool readCount(const std::string& b, uint64_t& at, uint64_t& count) {
  count = static_cast<unsigned char>(b[at]) & 0x0F;
  ++at;
  if (count != 0x0F) return true;
  uint64_t marker = 0;
  if (!readBig(b, at, 1, marker) || (marker & 0xF0) != 0x10) return false;
  const uint64_t width = uint64_t{1} << (marker & 0x0F);
  if (!readBig(b, at + 1, width, count)) return false;
  at += 1 + width;
  return true;
}

// Appends code point `c` to `out` as UTF-8.
void appendUtf8(char32_t c, std::string& out) {
  if (c < 0x80) {
    out += static_cast<char>(c);
  } else if (c < 0x800) {
    out += static_cast<char>(0xC0 | (c >> 6));
    out += static_cast<char>(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    out += static_cast<char>(0xE0 | (c >> 12));
    out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (c & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | (c >> 18));
    out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
    out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (c & 0x3F));
  }
}

// Text of a UTF-16 (big-endian) string object, the way libplist turns one
// into UTF-8 (a lone surrogate becomes U+FFFD).
std::string utf16Text(const std::string& b, uint64_t at, uint64_t units) {
  std::string out;
  for (uint64_t i = 0; i < units; ++i) {
    char32_t c = (static_cast<unsigned char>(b[at + 2 * i]) << 8) |
                 static_cast<unsigned char>(b[at + 2 * i + 1]);
    if (c >= 0xD800 && c < 0xDC00 && i + 1 < units) {
      const char32_t low =
          (static_cast<unsigned char>(b[at + 2 * i + 2]) << 8) |
          static_cast<unsigned char>(b[at + 2 * i + 3]);
      if (low >= 0xDC00 && low < 0xE000) {
        c = 0x10000 + ((c - 0xD800) << 10) + (low - 0xDC00);
        ++i;
      } else {
        c = 0xFFFD;
      }
    } else if (c >= 0xD800 && c < 0xE000) {
      c = 0xFFFD;
    }
    appendUtf8(c, out);
  }
  return out;
}

// Dictionary keys holding a NUL byte, as read (libplist's name for such a
// key once its NULs are stood in for by U+0001, to the key with its NULs).
using NulKeys = std::map<std::string, std::string>;

// libplist keeps a key holding a NUL (from a UTF-16 string) with its full
// length but reads it back as a C string, and asserts the two agree: the
// whole process ends; an ASCII key it would cut short. No call of libplist
// gives a key's length, so before libplist builds the tree, each NUL of a
// key in `b` is replaced by U+0001 and the key is noted in `keys`, to be
// given back its NULs once read. Structural damage is left for libplist to
// reject; only the keys are looked at here.
void standInForNulKeys(std::string& b, NulKeys& keys) {
  const uint64_t size = b.size();
  if (size < 8 + 32) return;
  const uint64_t trailer = size - 32;
  uint64_t offsetWidth = 0, refWidth = 0, objects = 0, table = 0;
  if (!readBig(b, trailer + 6, 1, offsetWidth) ||
      !readBig(b, trailer + 7, 1, refWidth) ||
      !readBig(b, trailer + 8, 8, objects) ||
      !readBig(b, trailer + 24, 8, table))
    return;
  if (offsetWidth == 0 || offsetWidth > 8 || refWidth == 0 || refWidth > 8 ||
      table > trailer || objects > (trailer - table) / offsetWidth)
    return;
  auto offsetOf = [&](uint64_t index, uint64_t& at) {
    return index < objects &&
           readBig(b, table + index * offsetWidth, offsetWidth, at) &&
           at < trailer;
  };
  std::vector<bool> done(objects, false);
  auto patchKey = [&](uint64_t index) {
    uint64_t at = 0;
    if (!offsetOf(index, at) || done[index]) return;
    done[index] = true;
    const auto kind = static_cast<unsigned char>(b[at]) & 0xF0;
    if (kind != 0x50 && kind != 0x60) return;
    uint64_t count = 0;
    if (!readCount(b, at, count)) return;
    const uint64_t unit = kind == 0x60 ? 2 : 1;
    if (at > trailer || count > (trailer - at) / unit) return;
    bool nul = false;
    for (uint64_t i = 0; i < count && !nul; ++i)
      nul = b[at + i * unit] == '\0' &&
            (unit == 1 || b[at + i * unit + 1] == '\0');
    if (!nul) return;
    std::string original =
        unit == 2 ? utf16Text(b, at, count) : b.substr(at, count);
    for (uint64_t i = 0; i < count; ++i)
      if (b[at + i * unit] == '\0' &&
          (unit == 1 || b[at + i * unit + 1] == '\0'))
        b[at + i * unit + unit - 1] = '\x01';
    std::string standIn = original;
    for (char& c : standIn)
      if (c == '\0') c = '\x01';
    keys.emplace(std::move(standIn), std::move(original));
  };
  for (uint64_t i = 0; i < objects; ++i) {
    uint64_t at = 0;
    if (!offsetOf(i, at) || (static_cast<unsigned char>(b[at]) & 0xF0) != 0xD0)
      continue;
    uint64_t count = 0;
    if (!readCount(b, at, count) || at > trailer ||
        count > (trailer - at) / refWidth)
      continue;
    for (uint64_t k = 0; k < count; ++k) {
      uint64_t ref = 0;
      if (readBig(b, at + k * refWidth, refWidth, ref)) patchKey(ref);
    }
  }
}

// Dates in libplist 2.2 are seconds and microseconds since 2001-01-01.
Value fromNode(plist_t node, const NulKeys& nulKeys, int depth) {
  if (!node || depth > 512) return Value();
  switch (plist_get_node_type(node)) {
    case PLIST_BOOLEAN: {
      uint8_t b = 0;
      plist_get_bool_val(node, &b);
      return Value(b != 0);
    }
    case PLIST_UINT: {
      uint64_t u = 0;
      plist_get_uint_val(node, &u);
      return Value(static_cast<int64_t>(u));
    }
    case PLIST_REAL: {
      double d = 0;
      plist_get_real_val(node, &d);
      return Value(d);
    }
    case PLIST_STRING: {
      // By pointer and length: a string holding a NUL byte (a binary list
      // can carry one) makes plist_get_string_val assert and end the host.
      uint64_t length = 0;
      const char* s = plist_get_string_ptr(node, &length);
      return Value(s ? std::string(s, length) : std::string());
    }
    case PLIST_KEY: {
      // Safe: parse() stands in for the NULs of binary keys (XML keys are
      // cut at a NUL by libplist's own reader, so lengths agree there).
      char* s = nullptr;
      plist_get_key_val(node, &s);
      std::string out = s ? s : "";
      free(s);
      return Value(std::move(out));
    }
    case PLIST_DATA: {
      char* bytes = nullptr;
      uint64_t len = 0;
      plist_get_data_val(node, &bytes, &len);
      Data d{std::string(bytes ? bytes : "", bytes ? len : 0)};
      free(bytes);
      return Value(std::move(d));
    }
    case PLIST_DATE: {
      int32_t sec = 0, usec = 0;
      plist_get_date_val(node, &sec, &usec);
      return Value(Date{sec + usec / 1e6});
    }
    case PLIST_ARRAY: {
      // Walked with an iterator: fetching item i by index walks the array
      // from its start in arrays read from a binary list (libplist indexes
      // only the arrays it builds item by item), which made reading a large
      // file quadratic.
      Array a;
      a.reserve(plist_array_get_size(node));
      plist_array_iter it = nullptr;
      plist_array_new_iter(node, &it);
      if (!it) return Value(std::move(a));
      for (;;) {
        plist_t item = nullptr;
        plist_array_next_item(node, it, &item);
        if (!item) break;
        a.push_back(fromNode(item, nulKeys, depth + 1));
      }
      free(it);
      return Value(std::move(a));
    }
    case PLIST_DICT: {
      Dict d;
      plist_dict_iter it = nullptr;
      plist_dict_new_iter(node, &it);
      if (!it) return Value(std::move(d));
      for (;;) {
        char* key = nullptr;
        plist_t item = nullptr;
        plist_dict_next_item(node, it, &key, &item);
        if (!item) {
          free(key);
          break;
        }
        if (key) {
          auto nul = nulKeys.find(key);
          d[nul == nulKeys.end() ? std::string(key) : nul->second] =
              fromNode(item, nulKeys, depth + 1);
        }
        free(key);
      }
      free(it);
      return Value(std::move(d));
    }
    default:
      return Value();
  }
}

// libplist keeps a date as 32-bit seconds since 2001 and microseconds.
bool writableDate(double seconds) {
  return std::isfinite(seconds) && seconds >= -2147483648.0 &&
         seconds < 2147483648.0;
}

plist_t toNode(const Value& v) {
  const auto& s = v.storage();
  if (auto b = std::get_if<bool>(&s)) return plist_new_bool(*b);
  if (auto i = std::get_if<int64_t>(&s))
    return plist_new_uint(static_cast<uint64_t>(*i));
  if (auto d = std::get_if<double>(&s)) return plist_new_real(*d);
  if (auto str = std::get_if<std::string>(&s))
    return plist_new_string(str->c_str());
  if (auto data = std::get_if<Data>(&s))
    return plist_new_data(data->bytes.data(), data->bytes.size());
  if (auto date = std::get_if<Date>(&s)) {
    // writeFile() refuses dates libplist cannot hold; the reference date
    // stands in for one here rather than an out-of-range conversion.
    if (!writableDate(date->seconds)) return plist_new_date(0, 0);
    double whole = std::trunc(date->seconds);
    return plist_new_date(static_cast<int32_t>(whole),
                          static_cast<int32_t>((date->seconds - whole) * 1e6));
  }
  if (auto a = std::get_if<Array>(&s)) {
    plist_t node = plist_new_array();
    for (const auto& item : *a) plist_array_append_item(node, toNode(item));
    return node;
  }
  plist_t node = plist_new_dict();
  if (auto d = std::get_if<Dict>(&s))
    for (const auto& [key, item] : *d)
      plist_dict_set_item(node, key.c_str(), toNode(item));
  return node;
}

// True when libplist cannot write `v` as it is: a text or dictionary key
// anywhere in it holds a NUL byte, a date lies outside the 32-bit seconds
// libplist keeps, or an object was of a kind read as no value (a binary
// list's UID or set): a file may hold any of these, and writing it would
// change it.
bool unwritable(const Value& v, int depth) {
  // Reads stop at the same depth, so anything deeper was not read whole.
  if (depth > 512) return true;
  const auto& s = v.storage();
  if (std::holds_alternative<std::monostate>(s)) return true;
  if (auto str = std::get_if<std::string>(&s))
    return str->find('\0') != std::string::npos;
  if (auto date = std::get_if<Date>(&s)) return !writableDate(date->seconds);
  if (auto a = std::get_if<Array>(&s)) {
    for (const auto& item : *a)
      if (unwritable(item, depth + 1)) return true;
  } else if (auto d = std::get_if<Dict>(&s)) {
    for (const auto& [key, item] : *d)
      if (key.find('\0') != std::string::npos || unwritable(item, depth + 1))
        return true;
  }
  return false;
}

struct NodeFree {
  void operator()(plist_t p) const { plist_free(p); }
};
using Node = std::unique_ptr<void, NodeFree>;

}  // namespace

std::optional<Value> parse(const std::string& bytes) {
  if (bytes.empty()) return std::nullopt;
  plist_t root = nullptr;
  NulKeys nulKeys;
  if (bytes.size() >= 8 && bytes.compare(0, 8, "bplist00") == 0) {
    std::string patched = bytes;
    standInForNulKeys(patched, nulKeys);
    plist_from_bin(patched.data(), static_cast<uint32_t>(patched.size()),
                   &root);
  } else {
    plist_from_xml(bytes.data(), static_cast<uint32_t>(bytes.size()), &root);
  }
  if (!root) return std::nullopt;
  Node owner(root);
  return fromNode(root, nulKeys, 0);
}

std::string toXml(const Value& value) {
  Node node(toNode(value));
  char* xml = nullptr;
  uint32_t len = 0;
  plist_to_xml(node.get(), &xml, &len);
  std::string out(xml ? xml : "", xml ? len : 0);
  free(xml);
  return out;
}

bool readBytes(const std::string& path, std::string& out) {
  int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) return false;
  out.clear();
  char buf[65536];
  for (;;) {
    ssize_t n = ::read(fd, buf, sizeof buf);
    if (n < 0) {
      ::close(fd);
      return false;
    }
    if (n == 0) break;
    out.append(buf, static_cast<size_t>(n));
  }
  ::close(fd);
  return true;
}

bool writeBytesAtomically(const std::string& path, const std::string& bytes) {
  std::error_code ec;
  auto parent = std::filesystem::path(path).parent_path();
  if (!parent.empty()) std::filesystem::create_directories(parent, ec);
  std::string tmp = path + ".XXXXXX";
  int fd = ::mkstemp(tmp.data());
  if (fd < 0) return false;
  size_t done = 0;
  while (done < bytes.size()) {
    ssize_t n = ::write(fd, bytes.data() + done, bytes.size() - done);
    if (n <= 0) {
      ::close(fd);
      ::unlink(tmp.c_str());
      return false;
    }
    done += static_cast<size_t>(n);
  }
  ::fchmod(fd, 0644);
  // Closed whatever happens; the temporary file never outlives a failure.
  const bool synced = ::fsync(fd) == 0;
  const bool closed = ::close(fd) == 0;
  if (!synced || !closed || ::rename(tmp.c_str(), path.c_str()) != 0) {
    ::unlink(tmp.c_str());
    return false;
  }
  return true;
}

std::optional<Value> readFile(const std::string& path) {
  std::string bytes;
  if (!readBytes(path, bytes)) return std::nullopt;
  return parse(bytes);
}

std::optional<Dict> readDictionary(const std::string& path) {
  auto v = readFile(path);
  if (!v || !v->isDict()) return std::nullopt;
  return std::move(*v->dict());
}

bool writeFile(const std::string& path, const Value& value) {
  if (unwritable(value, 0)) return false;
  return writeBytesAtomically(path, toXml(value));
}

}  // namespace zv::plist
