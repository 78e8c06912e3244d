#include "search/searcher_cache.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <limits>

#include "platform/mapped_file.h"
#include "platform/plist.h"
#include "search/byte_words.h"
#include "search/person_arena.h"

namespace zv {

namespace {

constexpr size_t kLinePiece = 2047;
constexpr int kMaxPieces = 10;
constexpr int kFields = 9;

void appendField(std::string& out, const char* text) {
  out += text ? text : "(null)";
}

// The leading decimal integer of `text` (after blanks, with a sign), as the
// C library's atoi reads it; 0 when there is none, clamped to 32 bits.
int32_t leadingInt(std::string_view text) {
  size_t i = 0;
  while (i < text.size() &&
         (text[i] == ' ' || (text[i] >= '\t' && text[i] <= '\r')))
    ++i;
  bool negative = false;
  if (i < text.size() && (text[i] == '+' || text[i] == '-'))
    negative = text[i++] == '-';
  int64_t value = 0;
  for (; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i) {
    value = value * 10 + (text[i] - '0');
    if (value > int64_t{std::numeric_limits<int32_t>::max()} + 1) break;
  }
  if (negative) value = -value;
  return static_cast<int32_t>(
      std::clamp<int64_t>(value, std::numeric_limits<int32_t>::min(),
                          std::numeric_limits<int32_t>::max()));
}

using Pieces = std::array<std::string_view, kMaxPieces>;

void addPerson(const Pieces& pieces, PersonArena& arena,
               ZVSearcher::PersonList& out) {
  auto person = arena.make();
  person->setRecordId(leadingInt(pieces[0]));
  person->setPhoneType(leadingInt(pieces[1]));
  person->setNameLength(leadingInt(pieces[2]));
  person->setTexts(pieces[7], pieces[3], pieces[5], pieces[4], pieces[6],
                   pieces[8]);
  out.push_back(std::move(person));
}

// The bytes that end a piece or a line.
constexpr std::array<bool, 256> kBreaks = [] {
  std::array<bool, 256> breaks{};
  breaks['\t'] = breaks['\n'] = breaks['\0'] = true;
  return breaks;
}();

// The first tab, newline or NUL in [p, end), or end. Fields are short, so
// this looks at eight bytes at a time rather than calling memchr per field.
const char* findBreak(const char* p, const char* end) {
  for (; end - p >= 8; p += 8) {
    const uint64_t word = words::load(p);
    const uint64_t hits = words::zeroBytes(word ^ words::repeat('\t')) |
                          words::zeroBytes(word ^ words::repeat('\n')) |
                          words::zeroBytes(word);
    if (hits) return p + words::firstByte(hits);
  }
  while (p < end && !kBreaks[static_cast<unsigned char>(*p)]) ++p;
  return p;
}

}  // namespace

std::string formatCacheLine(const ZVPerson& p) {
  std::string out = std::to_string(p.recordId());
  out += '\t';
  out += std::to_string(p.phoneType());
  out += '\t';
  out += std::to_string(p.nameLength());
  for (const char* field : {p.nameJianPin(), p.namePinYin(), p.nameEnglish(),
                            p.nameFirst(), p.phoneNumber(), p.nameFull()}) {
    out += '\t';
    appendField(out, field);
  }
  out += '\n';
  return out;
}

void readPersonsCache(std::string_view bytes, ZVSearcher::PersonList& out) {
  if (bytes.empty()) return;  // an empty file maps to no address at all
  const char* data = bytes.data();
  const size_t size = bytes.size();
  size_t lines = 1;
  for (const char* p = data;
       (p = static_cast<const char*>(std::memchr(p, '\n', data + size - p)));
       ++p)
    ++lines;
  out.reserve(out.size() + lines);
  PersonArena arena(lines);
  Pieces pieces;
  size_t pos = 0;
  while (pos < size) {
    // One pass over the line (at most kLinePiece bytes): tabs split it, a
    // newline or a NUL ends its text.
    const char* const line = data + pos;
    const size_t limit = std::min(size - pos, kLinePiece);
    const char* const end = line + limit;
    int count = 0;
    const char* start = line;
    const char* stop = findBreak(line, end);
    for (; stop < end && *stop == '\t'; stop = findBreak(stop + 1, end)) {
      if (count < kMaxPieces - 1) {
        pieces[count++] = std::string_view(start, stop - start);
        start = stop + 1;
      }
    }
    pieces[count++] = std::string_view(start, stop - start);
    // The line is consumed through its newline, past any NUL.
    size_t length = limit;
    if (stop < end) {
      const auto* newline =
          static_cast<const char*>(std::memchr(stop, '\n', end - stop));
      if (newline) length = newline - line + 1;
    }
    pos += length;
    if (count >= kFields) addPerson(pieces, arena, out);
  }
}

void ZVSearcher::loadAddressBookCache() {
  const platform::MappedFile file(platform_.path(kCachePath));
  if (!file.ok()) return;
  persons_.clear();
  readPersonsCache(file.bytes(), persons_);
  updateAddressBookDict();
}

void ZVSearcher::cacheAddressBook() {
  std::string bytes;
  bytes.reserve(persons_.size() * 64);
  for (const auto& p : persons_) bytes += formatCacheLine(*p);
  // Written whole and renamed into place, so a process that reads the cache
  // meanwhile sees either the old or the new file.
  plist::writeBytesAtomically(platform_.path(kCachePath), bytes);
}

}  // namespace zv
