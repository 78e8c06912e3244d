#include "area/area_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "area/area_format.h"

namespace zv {

using namespace areafmt;

struct ZVAreaFile {
  // The open file, read with pread rather than mapped: another process may
  // truncate or rewrite it in place, and a read past its new end is a short
  // read here where a mapping would fault. mapSize is the size it had at
  // the last stat (at load, then before every lookup).
  int fd = -1;
  uint64_t mapSize = 0;
  // The end of the last of the four blocks the header points at: a file
  // shorter than that (truncated, or half rewritten) answers nothing.
  uint64_t wholeSize = 0;
  // The header plus a NUL, so that measuring an unterminated header text
  // stops at the header's end.
  uint8_t* header = nullptr;
  uint16_t* keys = nullptr;
  size_t keyCount = 0;
  // The string block plus a NUL, when cached; otherwise null.
  char* strings = nullptr;
  uint32_t stringSize = 0;
  char* result = nullptr;
  size_t separatorLen = 0, accessLen = 0, access2Len = 0, countryLen = 0,
         trunkLen = 0;
};

namespace {

constexpr size_t kResultCapacity = 103;  // plus the terminating NUL
constexpr size_t kFileTextLimit = 100;

uint16_t field16(const ZVAreaFile* h, size_t at) {
  return readU16(h->header + at);
}
uint32_t field32(const ZVAreaFile* h, size_t at) {
  return readU32(h->header + at);
}

// Copies up to `n` bytes at file offset `at` into `out`; bytes past the end
// of the file read as zero. Returns the number of bytes that were in the
// file.
size_t readAt(const ZVAreaFile* h, uint64_t at, void* out, size_t n) {
  std::memset(out, 0, n);
  size_t done = 0;
  while (done < n) {
    ssize_t got = pread(h->fd, static_cast<uint8_t*>(out) + done, n - done,
                        off_t(at + done));
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) break;
    done += size_t(got);
  }
  // A short read leaves zeros behind what was read.
  if (done < n) std::memset(static_cast<uint8_t*>(out) + done, 0, n - done);
  return done;
}

uint64_t currentSize(int fd) {
  struct stat st;
  return fstat(fd, &st) == 0 && st.st_size > 0 ? uint64_t(st.st_size) : 0;
}

const char* headerText(const ZVAreaFile* h, size_t at) {
  return reinterpret_cast<const char*>(h->header + at);
}

bool startsWith(const char* s, const char* prefix, size_t len) {
  return std::strncmp(s, prefix, len) == 0;
}

void release(ZVAreaFile* h) {
  if (h->fd >= 0) close(h->fd);
  std::free(h->header);
  std::free(h->keys);
  std::free(h->strings);
  std::free(h->result);
  std::free(h);
}

bool validHeader(const ZVAreaFile* h) {
  if (field16(h, kMagicAt) != kMagic) return false;
  if (field16(h, kVersionAt) >= kVersionLimit) return false;
  if (field16(h, kMinDigitsAt) == 0 || field16(h, kMaxDigitsAt) == 0)
    return false;
  for (size_t at = kKeyIndexAt; at < kHeaderSize; at += 4)
    if (field32(h, at) == 0) return false;
  return true;
}

bool insideFile(const ZVAreaFile* h, uint32_t offset, uint32_t size) {
  return uint64_t(offset) + size <= h->mapSize;
}

// Appends `len` bytes of `text` to the result, within its capacity.
void append(char* out, size_t& len, const char* text, size_t n) {
  size_t room = kResultCapacity - std::min(len, kResultCapacity);
  std::memcpy(out + len, text, std::min(n, room));
  len = std::min(len + n, kResultCapacity);
}

// Length of the cached text at `offset` (0 when the offset lies outside the
// block; the extra NUL ends an unterminated last text).
size_t cachedLength(const ZVAreaFile* h, uint16_t offset) {
  return offset < h->stringSize ? std::strlen(h->strings + offset) : 0;
}

// Reads a text from the string block in the file: up to `limit` bytes,
// ending at a NUL or the end of the file. Returns its length.
size_t fileText(const ZVAreaFile* h, uint16_t offset, char* out, size_t limit) {
  uint64_t at = uint64_t(field32(h, kStringBlockAt)) + offset;
  if (at >= h->mapSize) return 0;
  size_t avail = readAt(h, at, out, limit);
  const void* nul = std::memchr(out, 0, avail);
  return nul ? static_cast<const char*>(nul) - out : avail;
}

// Builds the result text of one record; returns its length.
size_t buildResult(ZVAreaFile* h, uint16_t location, uint16_t type, int flags) {
  char* out = h->result;
  size_t len = 0;
  char text[kResultCapacity];
  if ((flags & kWantName) && location) {
    if (h->strings) {
      // An out-of-bounds text still advances the length: the result then
      // carries earlier bytes of the buffer, as the format always has.
      size_t n = cachedLength(h, location);
      if (size_t(location) + n < h->stringSize)
        std::memcpy(out, h->strings + location, std::min(n, kResultCapacity));
      len = std::min(n, kResultCapacity);
    } else {
      size_t n = fileText(h, location, text, kFileTextLimit);
      append(out, len, text, n);
    }
  }
  if ((flags & kWantType) && type) {
    if (len) append(out, len, headerText(h, kSeparatorAt), h->separatorLen);
    if (h->strings) {
      size_t n = cachedLength(h, type);
      if (size_t(type) + n < h->stringSize)
        append(out, len, h->strings + type, n);
    } else if (len < kFileTextLimit) {
      size_t n = fileText(h, type, text, kFileTextLimit - len);
      append(out, len, text, n);
    }
  }
  return len;
}

}  // namespace

ZVAreaFile* zvarea_load(const char* path, unsigned cacheLimit) {
  if (!path) return nullptr;
  auto* h = static_cast<ZVAreaFile*>(std::calloc(1, sizeof(ZVAreaFile)));
  if (!h) return nullptr;
  h->fd = open(path, O_RDONLY | O_CLOEXEC);
  struct stat st;
  if (h->fd < 0 || fstat(h->fd, &st) != 0 || !S_ISREG(st.st_mode) ||
      uint64_t(st.st_size) < kHeaderSize)
    return release(h), nullptr;
  h->mapSize = uint64_t(st.st_size);

  h->header = static_cast<uint8_t*>(std::calloc(1, kHeaderSize + 1));
  if (!h->header) return release(h), nullptr;
  if (readAt(h, 0, h->header, kHeaderSize) < kHeaderSize || !validHeader(h))
    return release(h), nullptr;
  for (size_t at : {kKeyIndexAt, kRangeTableAt, kStringBlockAt, kRecordTableAt})
    h->wholeSize = std::max<uint64_t>(
        h->wholeSize, uint64_t(field32(h, at)) + field32(h, at + 4));

  uint32_t keyAt = field32(h, kKeyIndexAt),
           keySize = field32(h, kKeyIndexAt + 4);
  if (!insideFile(h, keyAt, keySize)) return release(h), nullptr;
  h->keyCount = keySize / 2;
  h->keys = static_cast<uint16_t*>(std::malloc(keySize));
  if (!h->keys) return release(h), nullptr;
  {
    auto* raw = static_cast<uint8_t*>(std::malloc(keySize));
    if (!raw) return release(h), nullptr;
    const bool read = readAt(h, keyAt, raw, keySize) == keySize;
    for (size_t i = 0; read && i < h->keyCount; ++i)
      h->keys[i] = readU16(raw + 2 * i);
    std::free(raw);
    if (!read) return release(h), nullptr;
  }

  uint32_t stringAt = field32(h, kStringBlockAt);
  uint32_t stringSize = field32(h, kStringBlockAt + 4);
  if (stringSize <= cacheLimit) {
    if (!insideFile(h, stringAt, stringSize)) return release(h), nullptr;
    h->strings = static_cast<char*>(std::malloc(size_t(stringSize) + 1));
    if (!h->strings) return release(h), nullptr;
    if (readAt(h, stringAt, h->strings, stringSize) != stringSize)
      return release(h), nullptr;
    h->strings[stringSize] = 0;
    h->stringSize = stringSize;
  }

  h->result = static_cast<char*>(std::calloc(1, kResultCapacity + 1));
  if (!h->result) return release(h), nullptr;
  h->separatorLen = std::strlen(headerText(h, kSeparatorAt));
  h->accessLen = std::strlen(headerText(h, kAccessAt));
  h->access2Len = std::strlen(headerText(h, kAccess2At));
  h->countryLen = std::strlen(headerText(h, kCountryAt));
  h->trunkLen = std::strlen(headerText(h, kTrunkAt));
  return h;
}

bool zvarea_intact(const ZVAreaFile* area) {
  if (!area) return false;
  for (size_t at : {kKeyIndexAt, kRangeTableAt, kStringBlockAt, kRecordTableAt})
    if (!insideFile(area, field32(area, at), field32(area, at + 4)))
      return false;
  return true;
}

void zvarea_unload(ZVAreaFile* area) {
  if (area) release(area);
}

uint32_t zvarea_atoi(const char* text, int count) {
  int m = std::min(count, 8);
  uint32_t first = 1;
  int i = 0;
  for (; i < 4 && text[i] >= '0' && text[i] <= '9'; ++i)
    first = first * 10 + (text[i] - '0');
  uint32_t sub = 0;
  if (m >= 5) {
    // "1" followed by characters 5..m; a non-digit before them ends the
    // first key's conversion but not the sub-key's.
    size_t len = strnlen(text, 4);
    sub = 1;
    for (int j = 4; len == 4 && j < m && text[j] >= '0' && text[j] <= '9'; ++j)
      sub = sub * 10 + (text[j] - '0');
  }
  return (first & 0xFFFF) | ((sub & 0xFFFF) << 16);
}

int zvarea_cmp(const void* a, const void* b) {
  return int(*static_cast<const uint16_t*>(a)) -
         int(*static_cast<const uint16_t*>(b));
}

const char* zvarea_get(ZVAreaFile* h, const char* s, int flags) {
  if (!h || !s || !*s) return nullptr;
  // A file that another process shrank answers nothing until it is whole
  // again; one that loaded truncated still answers from what it has.
  const uint64_t size = currentSize(h->fd);
  if (size < h->mapSize && size < h->wholeSize) return nullptr;
  h->mapSize = size;
  if (*s == '+') {
    ++s;
  } else if (startsWith(s, headerText(h, kAccessAt), h->accessLen)) {
    s += h->accessLen;
  } else if (startsWith(s, headerText(h, kAccess2At), h->access2Len)) {
    s += h->access2Len;
  }
  bool longForm = false;
  if (startsWith(s, headerText(h, kCountryAt), h->countryLen)) {
    s += h->countryLen;
    longForm = true;
    if (strnlen(s, 8) < 8) return nullptr;
  }
  if (startsWith(s, headerText(h, kTrunkAt), h->trunkLen)) {
    s += h->trunkLen;
    longForm = true;
  }
  size_t length = std::strlen(s);
  size_t minDigits = field16(h, kMinDigitsAt);
  if (length < minDigits) return nullptr;
  size_t digits = std::min<size_t>(length, field16(h, kMaxDigitsAt));
  size_t n = std::max<size_t>(digits, 4);
  long extra = digits >= 4 ? long(digits) - 4 : 0;
  uint32_t packed = zvarea_atoi(s, int(std::min<size_t>(n, 8)));
  uint16_t key = packed & 0xFFFF;
  uint16_t sub = packed >> 16;

  uint64_t rangeAt = field32(h, kRangeTableAt);
  uint64_t recordAt = field32(h, kRecordTableAt);
  for (size_t k = 4;; --k) {
    const void* found =
        std::bsearch(&key, h->keys, h->keyCount, sizeof(uint16_t), zvarea_cmp);
    if (found) {
      size_t i = static_cast<const uint16_t*>(found) - h->keys;
      uint8_t raw[kRangeEntrySize];
      readAt(h, rangeAt + kRangeEntrySize * i, raw, sizeof raw);
      uint64_t entry = readU64(raw);
      uint32_t low = entry & 0xFFFF, high = (entry >> 16) & 0xFFFF;
      bool longOnly = (entry >> 32) & 1;
      uint64_t base = entry >> 33;
      uint32_t current = k == 4 ? sub : 0;
      for (;;) {
        if (current >= low && current <= high && (!longOnly || longForm)) {
          uint8_t rec[kRecordSize];
          readAt(h, recordAt + kRecordSize * (base + current - low), rec,
                 sizeof rec);
          uint16_t location = readU16(rec), type = readU16(rec + 2);
          if (type >= kLengthBound) {
            if (!((flags & kWantAlone) && n == size_t(type ^ 0xFFFF)))
              location = 0;
            type = 0;
          }
          size_t len = buildResult(h, location, type, flags);
          if (len) {
            h->result[len] = 0;
            return h->result;
          }
        }
        if (extra < 1) {
          --extra;
          break;
        }
        --extra;
        current = (current >= 10 && current <= 19) ? 0 : current / 10;
      }
    }
    if (k <= minDigits) return nullptr;
    key /= 10;
  }
}

}  // namespace zv
