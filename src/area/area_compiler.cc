#include "area/area_compiler.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <set>

#include "area/area_format.h"

namespace zv::area {

using namespace areafmt;

namespace {

// The longest text a record may produce, so that reading its texts from the
// string block in the file (at most 100 bytes) and from the cache agree.
constexpr size_t kMaxResult = 99;

void putU16(std::string& out, size_t at, uint16_t v) {
  out[at] = char(v & 0xFF);
  out[at + 1] = char(v >> 8);
}
void putU32(std::string& out, size_t at, uint32_t v) {
  for (int i = 0; i < 4; ++i) out[at + i] = char((v >> (8 * i)) & 0xFF);
}
void putText(std::string& out, size_t at, const std::string& text) {
  std::memcpy(&out[at], text.data(), text.size());
}

// Messages read "NAME:LINE: message", as the parser's do.
struct Failer {
  const std::string& name;
  [[noreturn]] void operator()(const Record& r,
                               const std::string& message) const {
    throw SourceError(name + ":" + std::to_string(r.line) + ": " + message);
  }
};

// "1" followed by the digits, as a key or sub-key value.
uint16_t keyValue(std::string_view digits) {
  uint32_t v = 1;
  for (char c : digits) v = v * 10 + (c - '0');
  return uint16_t(v);
}

// The digits a key or sub-key value stands for ("" for an invalid value).
bool keyDigits(uint32_t value, size_t maxDigits, std::string& digits) {
  std::string s = std::to_string(value);
  if (s.size() < 2 || s.size() > maxDigits + 1 || s[0] != '1') return false;
  digits = s.substr(1);
  return true;
}

using KeyMap = std::map<uint16_t, std::map<uint16_t, Record>>;

uint16_t subKeyOf(const std::string& prefix) {
  return prefix.size() > 4 ? keyValue(std::string_view(prefix).substr(4)) : 0;
}

// Groups the records by key and sub-key. Within one four-digit head, the
// records of shorter prefixes are copied down to every uncovered prefix of
// the head's longest length (a longer prefix keeps its own record), so that
// the head's records form one dense block of a single sub-key length instead
// of spanning several lengths. Length-bound records stay where they are:
// they answer numbers of exactly their length, whose sub-key has the
// record's own length.
KeyMap spreadByKey(const std::vector<Record>& input, const Failer& failAt) {
  KeyMap keys;
  std::set<std::string> explicitPrefixes;
  std::map<std::string, std::vector<const Record*>> heads;
  for (const Record& r : input) {
    if (!explicitPrefixes.insert(r.prefix).second)
      failAt(r, "prefix " + r.prefix + " given twice");
    if (r.prefix.size() < 4) {
      keys[keyValue(r.prefix)][0] = r;
    } else {
      heads[r.prefix.substr(0, 4)].push_back(&r);
    }
  }
  for (auto& [head, list] : heads) {
    size_t deepest = 4;
    for (const Record* r : list)
      if (!r->exactLength) deepest = std::max(deepest, r->prefix.size());
    std::stable_sort(list.begin(), list.end(), [](auto* a, auto* b) {
      return a->prefix.size() < b->prefix.size();
    });
    auto& subs = keys[keyValue(head)];
    for (const Record* r : list) {
      if (r->exactLength || r->prefix.size() == deepest) {
        subs[subKeyOf(r->prefix)] = *r;
        continue;
      }
      // Shorter prefixes come first, so a longer one overwrites them.
      size_t width = deepest - r->prefix.size(), count = 1;
      for (size_t i = 0; i < width; ++i) count *= 10;
      for (size_t n = 0; n < count; ++n) {
        std::string tail = std::to_string(n);
        Record copy = *r;
        copy.prefix += std::string(width - tail.size(), '0') + tail;
        if (!explicitPrefixes.count(copy.prefix))
          subs[subKeyOf(copy.prefix)] = std::move(copy);
      }
    }
  }
  return keys;
}

}  // namespace

std::string compile(const Source& source, const std::string& name) {
  const Header& h = source.header;
  Failer failAt{name};
  if (source.records.empty())
    throw SourceError(name + ": the source has no records");

  // Texts: line types first, each block sorted, so offsets do not depend on
  // the order of the lines.
  std::set<std::string> types, locations;
  for (const Record& r : source.records) {
    if (!r.type.empty()) types.insert(r.type);
  }
  for (const Record& r : source.records) {
    if (!r.location.empty() && !types.count(r.location))
      locations.insert(r.location);
  }
  std::string strings(1, '\0');
  std::map<std::string, uint32_t> offsets;
  for (const auto* group : {&types, &locations}) {
    for (const std::string& text : *group) {
      offsets[text] = uint32_t(strings.size());
      strings += text;
      strings += '\0';
    }
  }

  for (const Record& r : source.records) {
    size_t total = r.location.size() + r.type.size();
    if (!r.location.empty() && !r.type.empty()) total += h.separator.size();
    if (total > kMaxResult)
      failAt(r, "location and type together exceed " +
                    std::to_string(kMaxResult) + " bytes");
    if (!r.type.empty() && offsets[r.type] >= kLengthBound)
      failAt(r, "too many line-type texts");
    if (!r.location.empty() && offsets[r.location] > 0xFFFF)
      failAt(r, "the texts exceed 64 KiB");
  }
  auto keys = spreadByKey(source.records, failAt);

  std::string keyIndex, ranges, records;
  uint64_t base = 0;
  for (const auto& [key, subs] : keys) {
    uint16_t low = subs.begin()->first, high = subs.rbegin()->first;
    bool longOnly = std::all_of(subs.begin(), subs.end(), [](const auto& s) {
      return s.second.longForm;
    });
    if (base >= (uint64_t(1) << 31))
      failAt(subs.begin()->second, "too many records");
    std::string entry(8, '\0');
    uint64_t value = low | (uint64_t(high) << 16) | (uint64_t(longOnly) << 32) |
                     (base << 33);
    putU32(entry, 0, uint32_t(value));
    putU32(entry, 4, uint32_t(value >> 32));
    ranges += entry;
    std::string k(2, '\0');
    putU16(k, 0, key);
    keyIndex += k;

    std::string block(size_t(high - low + 1) * kRecordSize, '\0');
    for (const auto& [sub, r] : subs) {
      uint16_t location = r.location.empty() ? 0 : offsets[r.location];
      uint16_t type = r.exactLength    ? uint16_t(0xFFFF ^ r.exactLength)
                      : r.type.empty() ? 0
                                       : offsets[r.type];
      putU32(block, (sub - low) * kRecordSize,
             location | (uint32_t(type) << 16));
    }
    records += block;
    base += high - low + 1;
  }

  std::string out(kHeaderSize, '\0');
  putU16(out, kMagicAt, kMagic);
  putU16(out, kVersionAt, h.version);
  putText(out, kSeparatorAt, h.separator);
  putText(out, kAccessAt, h.access);
  putText(out, kAccess2At, h.access2);
  putText(out, kCountryAt, h.country);
  putText(out, kTrunkAt, h.trunk);
  putU16(out, kMinDigitsAt, h.minDigits);
  putU16(out, kMaxDigitsAt, h.maxDigits);
  auto block = [&](size_t at, const std::string& bytes) {
    putU32(out, at, uint32_t(out.size()));
    putU32(out, at + 4, uint32_t(bytes.size()));
    out += bytes;
  };
  block(kKeyIndexAt, keyIndex);
  block(kRangeTableAt, ranges);
  block(kRecordTableAt, records);
  block(kStringBlockAt, strings);
  return out;
}

Source decompile(const std::string& bytes, const std::string& name,
                 Layout* layout) {
  auto fail = [&](const std::string& message) -> SourceError {
    return SourceError(name + ": " + message);
  };
  if (bytes.size() < kHeaderSize) throw fail("shorter than the header");
  auto p = reinterpret_cast<const uint8_t*>(bytes.data());
  if (readU16(p + kMagicAt) != kMagic) throw fail("not an area database");
  Source source;
  Header& h = source.header;
  h.version = readU16(p + kVersionAt);
  if (h.version >= kVersionLimit)
    throw fail("unknown version " + std::to_string(h.version));
  auto text = [&](size_t at, size_t width) {
    return std::string(bytes.data() + at, strnlen(bytes.data() + at, width));
  };
  h.separator = text(kSeparatorAt, kSeparatorWidth - 1);
  h.access = text(kAccessAt, kPrefixWidth - 1);
  h.access2 = text(kAccess2At, kPrefixWidth - 1);
  h.country = text(kCountryAt, kPrefixWidth - 1);
  h.trunk = text(kTrunkAt, kPrefixWidth - 1);
  h.minDigits = readU16(p + kMinDigitsAt);
  h.maxDigits = readU16(p + kMaxDigitsAt);
  // What the text form cannot say is not described: a dump must build.
  for (auto [field, value] :
       {std::pair{"access", &h.access}, std::pair{"access2", &h.access2},
        std::pair{"country", &h.country}, std::pair{"trunk", &h.trunk}})
    if (value->find_first_not_of("0123456789") != std::string::npos)
      throw fail(std::string("the ") + field + " prefix is not digits");

  Layout l;
  auto blockAt = [&](size_t at, uint32_t& offset, uint32_t& size) {
    offset = readU32(p + at);
    size = readU32(p + at + 4);
    if (!offset || !size || uint64_t(offset) + size > bytes.size())
      throw fail("a block lies outside the file");
  };
  blockAt(kKeyIndexAt, l.keyIndexOffset, l.keyIndexSize);
  blockAt(kRangeTableAt, l.rangeTableOffset, l.rangeTableSize);
  blockAt(kRecordTableAt, l.recordTableOffset, l.recordTableSize);
  blockAt(kStringBlockAt, l.stringBlockOffset, l.stringBlockSize);
  if (!h.minDigits || !h.maxDigits) throw fail("digit bounds are zero");
  if (h.minDigits > h.maxDigits)
    throw fail("the digit bounds are the wrong way round");

  const char* strings = bytes.data() + l.stringBlockOffset;
  std::set<uint16_t> textOffsets;
  auto textAt = [&](uint16_t offset) {
    if (offset >= l.stringBlockSize) throw fail("text offset out of range");
    size_t n = strnlen(strings + offset, l.stringBlockSize - offset);
    if (offset + n >= l.stringBlockSize) throw fail("unterminated text");
    textOffsets.insert(offset);
    return std::string(strings + offset, n);
  };

  l.keys = l.keyIndexSize / 2;
  l.records = l.recordTableSize / kRecordSize;
  if (uint64_t(l.keys) * kRangeEntrySize > l.rangeTableSize)
    throw fail("range table shorter than the key index");
  // The records the keys' blocks span together: no more than the table
  // holds, so that reading a file takes time in proportion to its size.
  uint64_t spanned = 0;
  uint16_t previous = 0;
  for (size_t i = 0; i < l.keys; ++i) {
    uint16_t key = readU16(p + l.keyIndexOffset + 2 * i);
    std::string keyText;
    if (!keyDigits(key, 4, keyText))
      throw fail("key " + std::to_string(key) + " has no digit form");
    // Lookups search the index by halves: a key out of order is never found.
    if (i > 0 && key <= previous)
      throw fail("key " + std::to_string(key) + " is out of order");
    previous = key;
    uint64_t entry = readU64(p + l.rangeTableOffset + kRangeEntrySize * i);
    uint32_t low = entry & 0xFFFF, high = (entry >> 16) & 0xFFFF;
    bool longOnly = (entry >> 32) & 1;
    uint64_t base = entry >> 33;
    if (low <= high) spanned += high - low + 1;
    if (spanned > l.records)
      throw fail("the key blocks span more records than the table holds");
    l.longFormKeys += longOnly;
    for (uint32_t sub = low; sub <= high; ++sub) {
      uint64_t index = base + sub - low;
      if (index >= l.records) throw fail("record index out of range");
      uint32_t value = readU32(p + l.recordTableOffset + kRecordSize * index);
      if (!value) continue;
      Record r;
      r.prefix = keyText;
      if (sub) {
        std::string subText;
        if (keyText.size() != 4 || !keyDigits(sub, 4, subText))
          throw fail("sub-key " + std::to_string(sub) + " of key " +
                     std::to_string(key) + " can never be looked up");
        r.prefix += subText;
      }
      uint16_t location = value & 0xFFFF, type = value >> 16;
      if (location) r.location = textAt(location);
      if (type >= kLengthBound) {
        r.exactLength = type ^ 0xFFFF;
        if (r.exactLength < 4)
          throw fail("record for " + r.prefix + " is bound to " +
                     std::to_string(r.exactLength) +
                     " digits, which no lookup counts");
        ++l.lengthBoundRecords;
      } else if (type) {
        r.type = textAt(type);
      }
      if (r.location.empty() && r.type.empty() && !r.exactLength)
        throw fail("record for " + r.prefix + " has only empty texts");
      r.longForm = longOnly;
      ++l.usedRecords;
      source.records.push_back(std::move(r));
    }
  }
  l.texts = textOffsets.size();
  if (layout) *layout = l;
  return source;
}

}  // namespace zv::area
