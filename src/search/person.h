// ZVPerson: one searchable entry of the dial-pad search, i.e. one phone
// number of one contact (or one recently called number), with the contact's
// display name and the keypad-digit forms of that name.
//
// The six text fields are owned, NUL-terminated heap buffers that may be
// null. The search loop reads them raw (no copy); the views use the string
// getters, which give "" for a null buffer or one that is not valid UTF-8.
// Every copying setter frees the previous buffer. setPhoneNumber() keeps only
// the keypad's dialable characters (0-9 # * + , ;).
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

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
  ~ZVPerson() = default;
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

  // Raw buffers (may be null) and their byte lengths (0 when null).
  const char* phoneNumber() const { return phoneNumber_.data(); }
  const char* nameFull() const { return nameFull_.data(); }
  const char* nameJianPin() const { return nameJianPin_.data(); }
  const char* namePinYin() const { return namePinYin_.data(); }
  const char* nameFirst() const { return nameFirst_.data(); }
  const char* nameEnglish() const { return nameEnglish_.data(); }
  size_t phoneNumberLength() const { return phoneNumber_.size(); }
  size_t nameJianPinLength() const { return nameJianPin_.size(); }
  size_t namePinYinLength() const { return namePinYin_.size(); }
  size_t nameEnglishLength() const { return nameEnglish_.size(); }

  // Copying setters: free the old buffer, store a fresh copy.
  void setNameFull(std::string_view text) { nameFull_.assign(text); }
  void setNameJianPin(std::string_view text) { nameJianPin_.assign(text); }
  void setNamePinYin(std::string_view text) { namePinYin_.assign(text); }
  void setNameFirst(std::string_view text) { nameFirst_.assign(text); }
  void setNameEnglish(std::string_view text) { nameEnglish_.assign(text); }
  // Stores a copy filtered to the dialable characters, in order.
  void setPhoneNumber(std::string_view text);
  // Stores an unfiltered copy (the text is already clean).
  void setPhoneNumberF(std::string_view text) { phoneNumber_.assign(text); }

  // New strings made from the buffers; "" for null or invalid UTF-8.
  std::string getPhoneNumber() const { return phoneNumber_.str(); }
  std::string getNameFull() const { return nameFull_.str(); }
  std::string getNameJianPin() const { return nameJianPin_.str(); }
  std::string getNamePinYin() const { return namePinYin_.str(); }
  std::string getNameFirst() const { return nameFirst_.str(); }
  std::string getNameEnglish() const { return nameEnglish_.str(); }

  // True for the dialable characters that a number keeps.
  static bool isDialable(unsigned char c) {
    return (c >= '0' && c <= '9') || c == '#' || c == '*' || c == '+' ||
           c == ',' || c == ';';
  }

 private:
  // An owned malloc'd, NUL-terminated byte string, or null.
  class Buffer {
   public:
    Buffer() = default;
    ~Buffer() { release(); }
    Buffer(const Buffer&) = delete;
    Buffer& operator=(const Buffer&) = delete;
    void assign(std::string_view text);
    // Takes a malloc'd buffer of `size` bytes plus the NUL.
    void adopt(char* bytes, size_t size);
    const char* data() const { return bytes_; }
    size_t size() const { return size_; }
    std::string str() const;

   private:
    void release();
    char* bytes_ = nullptr;
    size_t size_ = 0;
  };

  int32_t recordId_ = -1;
  int32_t phoneType_ = -1;
  int32_t priority_ = 0;
  int32_t nameLength_ = 0;
  Buffer phoneNumber_;
  Buffer nameFull_;
  Buffer nameJianPin_;
  Buffer namePinYin_;
  Buffer nameFirst_;
  Buffer nameEnglish_;
};

// True when `text` is well-formed UTF-8 (no overlong forms, surrogates or
// code points above U+10FFFF).
bool isValidUtf8(std::string_view text);

}  // namespace zv
