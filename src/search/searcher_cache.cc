#include "search/searcher_cache.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>

#include "platform/plist.h"
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

void readLine(std::string_view line, PersonArena& arena,
              ZVSearcher::PersonList& out) {
  // The line's own newline ends it; it does not open an empty last field.
  if (!line.empty() && line.back() == '\n') line.remove_suffix(1);
  std::array<std::string_view, kMaxPieces> pieces;
  int count = 0;
  size_t start = 0;
  while (count < kMaxPieces) {
    size_t end = start;
    while (end < line.size() && line[end] != '\t' && line[end] != '\n') ++end;
    if (end == line.size()) {
      pieces[count++] = line.substr(start);
      break;
    }
    pieces[count++] = line.substr(start, end - start);
    start = end + 1;
  }
  if (count < kFields) return;
  auto person = arena.make();
  person->setRecordId(leadingInt(pieces[0]));
  person->setPhoneType(leadingInt(pieces[1]));
  person->setNameLength(leadingInt(pieces[2]));
  person->setTexts(pieces[7], pieces[3], pieces[5], pieces[4], pieces[6],
                   pieces[8]);
  out.push_back(std::move(person));
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
  const char* data = bytes.data();
  const size_t size = bytes.size();
  size_t lines = 1;
  for (const char* p = data;
       (p = static_cast<const char*>(std::memchr(p, '\n', data + size - p)));
       ++p)
    ++lines;
  out.reserve(out.size() + lines);
  PersonArena arena(lines);
  size_t pos = 0;
  while (pos < size) {
    // Up to and including the newline, at most kLinePiece bytes.
    const size_t limit = std::min(size - pos, kLinePiece);
    const auto* newline =
        static_cast<const char*>(std::memchr(data + pos, '\n', limit));
    const size_t length = newline ? newline - (data + pos) + 1 : limit;
    std::string_view line(data + pos, length);
    pos += length;
    const auto* nul =
        static_cast<const char*>(std::memchr(line.data(), '\0', length));
    if (nul) line = line.substr(0, nul - line.data());
    readLine(line, arena, out);
  }
}

void ZVSearcher::loadAddressBookCache() {
  std::string bytes;
  if (!plist::readBytes(platform_.path(kCachePath), bytes)) return;
  persons_.clear();
  readPersonsCache(bytes, persons_);
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
