// ZVPerson: one searchable entry of the dial-pad search, i.e. one phone
// number of one contact (or one recently called number), with the contact's
// display name and the keypad-digit forms of that name.
//
// The six text fields are owned, NUL-terminated byte strings that may be
// null. They live back to back in one block (inside the person when they are
// short, as almost all are), so the search loop touches one allocation per
// person and reads them raw (no copy); the views use the string getters,
// which give "" for a null field or one that is not valid UTF-8. A setter
// replaces its field's text and leaves the others as they were (their raw
// pointers may move). setPhoneNumber() keeps only the keypad's dialable
// characters (0-9 # * + , ;).
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "core/number_utils.h"
#include "platform/utf8.h"

namespace zv {

class ZVPerson {
 public:
  // Search flags kept in priority().
  enum Priority : int32_t {
    kExcluded = 1,  // not tested in this pass
    kMatched = 2,   // already filed in the current search
    kByInitials = 4,
    kByReading = 8,  // full reading, or initials inside the last reading
    kByWords = 16,
    kByNumber = 32,
    kTypedNumber = 64,  // the row that offers the typed number itself
    kPriorityList = 256,
  };

  ZVPerson() = default;
  ~ZVPerson() { releaseBlock(); }
  ZVPerson(const ZVPerson&) = delete;
  ZVPerson& operator=(const ZVPerson&) = delete;

  int32_t recordId() const { return recordId_; }
  void setRecordId(int32_t v) { recordId_ = v; }
  int32_t phoneType() const { return phoneType_; }
  void setPhoneType(int32_t v) { phoneType_ = v; }
  int32_t priority() const { return priority_; }
  void setPriority(int32_t v) { priority_ = v; }
  int32_t nameLength() const { return nameLength_; }
  void setNameLength(int32_t v) { nameLength_ = v; }

  // Raw texts (may be null) and their byte lengths (0 when null).
  const char* phoneNumber() const { return raw(kNumber); }
  const char* nameFull() const { return raw(kFull); }
  const char* nameJianPin() const { return raw(kJianPin); }
  const char* namePinYin() const { return raw(kPinYin); }
  const char* nameFirst() const { return raw(kFirst); }
  const char* nameEnglish() const { return raw(kEnglish); }
  size_t phoneNumberLength() const { return size_[kNumber]; }
  size_t nameJianPinLength() const { return size_[kJianPin]; }
  size_t namePinYinLength() const { return size_[kPinYin]; }
  size_t nameEnglishLength() const { return size_[kEnglish]; }

  // Copying setters: store a fresh copy in place of the old text.
  void setNameFull(std::string_view text) { assign(kFull, text); }
  void setNameJianPin(std::string_view text) { assign(kJianPin, text); }
  void setNamePinYin(std::string_view text) { assign(kPinYin, text); }
  void setNameFirst(std::string_view text) { assign(kFirst, text); }
  void setNameEnglish(std::string_view text) { assign(kEnglish, text); }
  // Stores a copy filtered to the dialable characters, in order.
  void setPhoneNumber(std::string_view text);
  // Stores an unfiltered copy (the text is already clean).
  void setPhoneNumberF(std::string_view text) { assign(kNumber, text); }
  // Sets all six texts at once (the number filtered as by setPhoneNumber,
  // or left null when !hasNumber), with a single copy; the loaders use it.
  void setTexts(std::string_view phoneNumber, std::string_view jianPin,
                std::string_view english, std::string_view pinYin,
                std::string_view first, std::string_view full,
                bool hasNumber = true);

  // New strings made from the texts; "" for null or invalid UTF-8.
  std::string getPhoneNumber() const { return str(kNumber); }
  std::string getNameFull() const { return str(kFull); }
  std::string getNameJianPin() const { return str(kJianPin); }
  std::string getNamePinYin() const { return str(kPinYin); }
  std::string getNameFirst() const { return str(kFirst); }
  std::string getNameEnglish() const { return str(kEnglish); }

  // Bytes after every text's NUL that are always readable (zero or other
  // texts), so that a search may read a word at a time.
  static constexpr size_t kReadSlack = 8;

  // The four searched forms as one run of bytes: initials, words, reading
  // and number in that order, each ended by its NUL (an absent form takes
  // no room), without the last NUL; empty when none is present. As after
  // every text, kReadSlack bytes past its end are readable.
  std::string_view searchedForms() const {
    for (int f = kNumber; f >= kJianPin; --f)
      if ((present_ >> f) & 1) return {block_, offset_[f] + size_[f]};
    return {};
  }

 private:
  // Field order in the block: the searched forms first, so that a search
  // reads the fewest cache lines.
  enum Field { kJianPin, kEnglish, kPinYin, kNumber, kFirst, kFull, kFields };
  // Texts up to this many bytes in all (NULs included) stay in the person.
  static constexpr size_t kInlineBytes = 96;

  const char* raw(Field f) const {
    return (present_ >> f) & 1 ? block_ + offset_[f] : nullptr;
  }
  std::string str(Field f) const;
  void assign(Field f, std::string_view text, bool filter = false);
  // Rebuilds the block from the `texts` whose bit is set in `present`;
  // `filterNumber` keeps only the number's dialable characters.
  void build(const std::string_view (&texts)[kFields], uint32_t present,
             bool filterNumber);
  void releaseBlock();

  int32_t recordId_ = -1;
  int32_t phoneType_ = -1;
  int32_t priority_ = 0;
  int32_t nameLength_ = 0;
  uint32_t offset_[kFields] = {};
  uint32_t size_[kFields] = {};
  uint32_t present_ = 0;  // bit per field
  char* block_ = inline_;
  char inline_[kInlineBytes];
};

}  // namespace zv
