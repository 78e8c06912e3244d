// Keypad letter tables for the dial-pad search.
//
// ASCII letters map through the fixed telephone keypad (abc 2 ... wxyz 9).
// Every other character is looked up in a T9Table: a hash table from one
// UTF-8 character to its reading (an opaque byte string, normally keypad
// digits such as "94264"). It has 5000 bucket heads, of which 0..4998 are
// used (djb2 of the character's bytes, read as signed chars, modulo 4999);
// each bucket is a chain whose head stays first while later entries are
// linked directly behind it. That order decides which reading wins for a
// character listed several times, so it is kept exactly.
//
// Text table files hold lines "reading=characters". The readers never read
// past a line or a character: a lead byte that promises more bytes than
// remain yields a shorter character.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace zv {

// Byte length of a UTF-8 character decided by its lead byte alone: 1 for
// ASCII, stray continuation bytes and 0xFF; otherwise the first clear bit
// among bits 5..1 gives 2..6, and 0xFE gives 7.
int utf8CharLength(unsigned char lead);
// The character of `text` that starts at byte `i` by that rule, cut at the
// end of the text.
std::string_view t9CharacterAt(std::string_view text, size_t i);
// Number of characters of `text` by that rule.
size_t utf8CharCount(std::string_view text);

// The keypad digit of an ASCII letter (either case), or 0 for any other
// byte.
char keypadLetter(unsigned char c);

// djb2 over the bytes as signed chars, 32-bit wrap-around.
int32_t t9Hash(const char* bytes, size_t length);
// The bucket: the hash sign-extended to 64 bits, modulo 4999 unsigned.
size_t t9Bucket(const char* bytes, size_t length);

class T9Table {
 public:
  static constexpr size_t kBuckets = 5000;
  static constexpr size_t kModulus = 4999;

  T9Table();
  T9Table(const T9Table&) = delete;
  T9Table& operator=(const T9Table&) = delete;

  // Adds an entry without a duplicate check (text-file rule).
  void add(std::string_view character, std::string_view reading);
  // Replaces the reading of the first entry whose character begins with
  // `character`'s bytes, or adds a new entry (overlay rule).
  void put(std::string_view character, std::string_view reading);
  // The reading of the first entry whose character begins with
  // `character`'s bytes; null when there is none.
  const std::string* lookup(std::string_view character) const;

  // Enters every character of `characters` under `reading` (add or put).
  void addAll(std::string_view reading, std::string_view characters);
  void putAll(std::string_view reading, std::string_view characters);

  size_t size() const { return pool_.size(); }
  // The chain of one bucket, head first (for inspection).
  std::vector<std::pair<std::string, std::string>> chain(size_t bucket) const;

 private:
  struct Entry {
    std::string character;
    std::string reading;
    Entry* next = nullptr;
  };
  Entry* find(std::string_view character, size_t bucket) const;

  std::vector<Entry*> buckets_;
  std::deque<Entry> pool_;  // owns the entries; addresses stay stable
};

// Reads a text table file; an unreadable file gives an empty table.
std::unique_ptr<T9Table> loadT9file(const std::string& hostPath);
// Applies the lines of a text table held in memory (the file reader's
// rules: 2047-byte pieces, first '=', last byte of the piece dropped).
void loadT9text(T9Table& table, std::string_view text);
// Overlays a property-list table (reading -> characters) onto `table`,
// creating it when null. A missing or non-dictionary file changes nothing.
void loadT9plist(std::unique_ptr<T9Table>& table, const std::string& hostPath);

}  // namespace zv
