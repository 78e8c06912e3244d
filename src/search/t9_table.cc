#include "search/t9_table.h"

#include <algorithm>
#include <cstring>

#include "platform/plist.h"

namespace zv {

namespace {

// "abc" 2 "def" 3 ... "wxyz" 9, indexed by letter - 'a'.
constexpr char kLetterDigits[] = "22233344455566677778889999";

// Longest piece of a text table read as one line (a 2048-byte buffer with
// its terminating NUL).
constexpr size_t kLinePiece = 2047;

// Calls f(character) for every character of `text`; a character never runs
// past the end of the text.
template <typename F>
void forEachCharacter(std::string_view text, F&& f) {
  for (size_t i = 0; i < text.size();) {
    std::string_view c = t9CharacterAt(text, i);
    f(c);
    i += c.size();
  }
}

bool beginsWith(const std::string& stored, std::string_view character) {
  return stored.size() >= character.size() &&
         std::memcmp(stored.data(), character.data(), character.size()) == 0;
}

}  // namespace

int utf8CharLength(unsigned char lead) {
  if ((lead & 0xC0) != 0xC0) return 1;
  for (int bit = 5, length = 2; bit >= 1; --bit, ++length)
    if (!(lead & (1u << bit))) return length;
  return (lead & 1) ? 1 : 7;
}

std::string_view t9CharacterAt(std::string_view text, size_t i) {
  size_t n = utf8CharLength(static_cast<unsigned char>(text[i]));
  return text.substr(i, std::min(n, text.size() - i));
}

size_t utf8CharCount(std::string_view text) {
  size_t count = 0;
  for (size_t i = 0; i < text.size(); ++count)
    i += t9CharacterAt(text, i).size();
  return count;
}

char keypadLetter(unsigned char c) {
  if (c >= 'a' && c <= 'z') return kLetterDigits[c - 'a'];
  if (c >= 'A' && c <= 'Z') return kLetterDigits[c - 'A'];
  return 0;
}

int32_t t9Hash(const char* bytes, size_t length) {
  uint32_t hash = 5381;
  for (size_t i = 0; i < length; ++i)
    hash = hash * 33u + static_cast<uint32_t>(static_cast<int32_t>(
                            static_cast<signed char>(bytes[i])));
  return static_cast<int32_t>(hash);
}

size_t t9Bucket(const char* bytes, size_t length) {
  auto widened =
      static_cast<uint64_t>(static_cast<int64_t>(t9Hash(bytes, length)));
  return static_cast<size_t>(widened % T9Table::kModulus);
}

T9Table::T9Table() : buckets_(kBuckets, nullptr) {}

T9Table::Entry* T9Table::find(std::string_view character, size_t bucket) const {
  for (Entry* e = buckets_[bucket]; e; e = e->next)
    if (beginsWith(e->character, character)) return e;
  return nullptr;
}

void T9Table::add(std::string_view character, std::string_view reading) {
  Entry& entry = pool_.emplace_back();
  entry.character.assign(character);
  entry.reading.assign(reading);
  Entry*& head = buckets_[t9Bucket(character.data(), character.size())];
  if (!head) {
    head = &entry;
  } else {
    entry.next = head->next;
    head->next = &entry;
  }
}

void T9Table::put(std::string_view character, std::string_view reading) {
  if (Entry* e = find(character, t9Bucket(character.data(), character.size())))
    e->reading.assign(reading);
  else
    add(character, reading);
}

const std::string* T9Table::lookup(std::string_view character) const {
  Entry* e = find(character, t9Bucket(character.data(), character.size()));
  return e ? &e->reading : nullptr;
}

void T9Table::addAll(std::string_view reading, std::string_view characters) {
  forEachCharacter(characters, [&](std::string_view c) { add(c, reading); });
}

void T9Table::putAll(std::string_view reading, std::string_view characters) {
  forEachCharacter(characters, [&](std::string_view c) { put(c, reading); });
}

std::vector<std::pair<std::string, std::string>> T9Table::chain(
    size_t bucket) const {
  std::vector<std::pair<std::string, std::string>> out;
  if (bucket >= kBuckets) return out;
  for (Entry* e = buckets_[bucket]; e; e = e->next)
    out.emplace_back(e->character, e->reading);
  return out;
}

void loadT9text(T9Table& table, std::string_view text) {
  size_t pos = 0;
  while (pos < text.size()) {
    // One piece as a line reader with a fixed buffer sees it.
    size_t end = pos;
    while (end < text.size() && end - pos < kLinePiece)
      if (text[end++] == '\n') break;
    std::string_view piece = text.substr(pos, end - pos);
    pos = end;
    // The buffer is a C string: an embedded NUL ends the line early.
    size_t nul = piece.find('\0');
    if (nul != std::string_view::npos) piece = piece.substr(0, nul);
    size_t eq = piece.find('=');
    if (eq == std::string_view::npos) continue;
    std::string_view reading = piece.substr(0, eq);
    std::string_view characters = piece.substr(eq + 1);
    // The last byte is taken to be the newline, whatever it is.
    if (!characters.empty()) characters.remove_suffix(1);
    table.addAll(reading, characters);
  }
}

std::unique_ptr<T9Table> loadT9file(const std::string& hostPath) {
  auto table = std::make_unique<T9Table>();
  std::string bytes;
  if (plist::readBytes(hostPath, bytes)) loadT9text(*table, bytes);
  return table;
}

void loadT9plist(std::unique_ptr<T9Table>& table, const std::string& hostPath) {
  if (!table) table = std::make_unique<T9Table>();
  auto dict = plist::readDictionary(hostPath);
  if (!dict) return;
  for (const auto& [reading, value] : *dict) {
    const std::string* characters = value.string();
    if (!characters || characters->empty()) continue;
    table->putAll(reading, *characters);
  }
}

}  // namespace zv
