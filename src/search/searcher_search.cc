// The keystroke search: rank every person that contains the typed key into
// nine classes (see search(list, key, length)), narrowing the previous
// results when the key only grew.
#include <cstring>

#include "search/byte_words.h"
#include "search/searcher.h"

namespace zv {

namespace {

// The positions among at[0..7] where the pair (`a`, `b`: its two bytes, each
// repeated in all eight bytes) starts, flagged as by
// words::zeroBytesAndAbove: every real one, possibly a few above it.
inline uint64_t pairHits(const char* at, uint64_t a, uint64_t b) {
  return words::zeroBytesAndAbove((words::load(at) ^ a) |
                                  (words::load(at + 1) ^ b));
}

// Offset of the first occurrence of key in the form, or -1. Looks for the
// key's first two bytes at eight positions per step (a person's block keeps
// ZVPerson::kReadSlack readable bytes after every form), then confirms each
// candidate exactly: the word test may flag extra positions above a real
// pair, never miss one. When only a match at the start counts, a prefix test
// is enough.
inline int64_t findKey(const char* form, size_t formLength, const char* key,
                       size_t keyLength, bool anywhere) {
  if (keyLength > formLength) return -1;
  if (!anywhere || keyLength == 0)
    return std::memcmp(form, key, keyLength) == 0 ? 0 : -1;
  const char first = key[0];
  const size_t lastStart = formLength - keyLength;
  if (keyLength == 1) {
    const void* hit = std::memchr(form, first, formLength);
    return hit ? static_cast<const char*>(hit) - form : -1;
  }
  const char second = key[1];
  const uint64_t a = words::repeat(first);
  const uint64_t b = words::repeat(second);
  for (size_t base = 0; base <= lastStart; base += 8) {
    for (uint64_t hits = pairHits(form + base, a, b); hits;) {
      const size_t i = base + words::firstByte(hits);
      hits &= hits - 1;
      if (i > lastStart) return -1;
      if (form[i] == first && form[i + 1] == second &&
          (keyLength == 2 ||
           std::memcmp(form + i + 2, key + 2, keyLength - 2) == 0))
        return static_cast<int64_t>(i);
    }
  }
  return -1;
}

// False when the key's first two bytes (`a`, `b`: each repeated in all
// eight bytes) occur nowhere in `forms`, which then cannot hold the key in
// any form. The word test may see extra positions, never miss one.
inline bool mayHoldPair(std::string_view forms, uint64_t a, uint64_t b) {
  for (size_t base = 0; base < forms.size(); base += 8)
    if (pairHits(forms.data() + base, a, b)) return true;
  return false;
}

// Ranking classes, in result order.
enum Class {
  kInitialsWhole = 0,
  kWordsEqual = 1,
  kReadingEqual = 2,
  kNumberEqual = 3,
  kInitials = 4,
  kWords = 5,
  kReading = 6,
  kNumber = 7,
  kOverflow = 8,
};

}  // namespace

void ZVSearcher::freeSearchs() {
  for (auto& c : cache_searchs_) {
    c.clear();
    c.shrink_to_fit();
  }
  cache_searchs_count_.fill(0);
  searchs_allocated_ = false;
}

void ZVSearcher::callocSearchs() {
  freeSearchs();
  if (persons_.empty()) return;
  for (int c = 0; c < kOverflow; ++c)
    cache_searchs_[c].resize(std::min(persons_.size(), kClassCapacity));
  cache_searchs_[kOverflow].resize(
      std::min(persons_.size(), kOverflowCapacity));
  searchs_allocated_ = true;
}

void ZVSearcher::clearSearch() {
  results_.clear();
  lastKey_.clear();
}

void ZVSearcher::file(int cls, const PersonRef* person) {
  if (cache_searchs_count_[cls] < cache_searchs_[cls].size()) {
    cache_searchs_[cls][cache_searchs_count_[cls]++] = person;
  } else if (cache_searchs_count_[kOverflow] <
             cache_searchs_[kOverflow].size()) {
    cache_searchs_[kOverflow][cache_searchs_count_[kOverflow]++] = person;
  } else {
    // Dropped: it keeps how it matched, but not the "matched in this
    // search" mark, which only the shown results get cleared; otherwise it
    // would be skipped by every later search until the next load.
    (*person)->setPriority((*person)->priority() & ~ZVPerson::kMatched);
  }
}

void ZVSearcher::search(const PersonList& list, const char* key,
                        size_t length) {
  const ZVPhoneSettings& s = *settings_;
  const bool initials = s.DialerJianPin();
  const bool words = s.DialerEnglish();
  const bool reading = s.DialerPinYin();
  const bool number = s.DialerPhoneNumber();
  const bool anyName = s.DialerAnyNamePos();
  const bool anyNumber = s.DialerAnyNumberPos();
  const auto keyLength = static_cast<int64_t>(length);
  // Most persons hold the key's first two bytes nowhere; one pass over all
  // four forms rules them out before the forms are tried one by one.
  const bool prefilter = length >= 2;
  const uint64_t a = prefilter ? words::repeat(key[0]) : 0;
  const uint64_t b = prefilter ? words::repeat(key[1]) : 0;

  for (const PersonRef& ref : list) {
    ZVPerson& p = *ref;
    if (p.priority() & (ZVPerson::kExcluded | ZVPerson::kMatched)) continue;
    if (prefilter && !mayHoldPair(p.searchedForms(), a, b)) continue;

    if (initials && p.nameJianPin()) {
      int64_t o =
          findKey(p.nameJianPin(), p.nameJianPinLength(), key, length, anyName);
      if (o >= 0) {
        if (o == 0 && p.nameLength() == keyLength) {
          p.setPriority(ZVPerson::kByInitials | ZVPerson::kMatched);
          file(kInitialsWhole, &ref);
        } else if (o >= int64_t{p.nameLength()} - 1) {
          // The key starts inside the last character's whole reading.
          p.setPriority(ZVPerson::kByReading | ZVPerson::kMatched);
          file(kReading, &ref);
        } else {
          p.setPriority(ZVPerson::kByInitials | ZVPerson::kMatched);
          file(kInitials, &ref);
        }
        continue;
      }
    }
    if (words && p.nameEnglish()) {
      int64_t o =
          findKey(p.nameEnglish(), p.nameEnglishLength(), key, length, anyName);
      if (o >= 0) {
        p.setPriority(ZVPerson::kByWords | ZVPerson::kMatched);
        file(o == 0 && p.nameEnglishLength() == length ? kWordsEqual : kWords,
             &ref);
        continue;
      }
    }
    if (reading && p.namePinYin()) {
      int64_t o =
          findKey(p.namePinYin(), p.namePinYinLength(), key, length, anyName);
      if (o >= 0) {
        p.setPriority(ZVPerson::kByReading | ZVPerson::kMatched);
        file(p.namePinYinLength() == length ? kReadingEqual : kReading, &ref);
        continue;
      }
    }
    if (number && p.phoneNumber()) {
      int64_t o = findKey(p.phoneNumber(), p.phoneNumberLength(), key, length,
                          anyNumber);
      if (o >= 0) {
        p.setPriority(ZVPerson::kByNumber | ZVPerson::kMatched);
        file(p.phoneNumberLength() == length ? kNumberEqual : kNumber, &ref);
      }
    }
  }
}

size_t ZVSearcher::search(std::string_view key) {
  if (key == "##") {
    loadCallHistory();
    lastKey_ = key;
    results_ = callHistory_;
    return results_.size();
  }
  if (key == "**") {
    lastKey_ = key;
    results_ = persons_;
    return results_.size();
  }
  if (!searchs_allocated_) return 0;

  const std::string k(key);  // NUL-terminated copy
  cache_searchs_count_.fill(0);

  // Narrowing: when the key only grew from a key of two or more characters,
  // only what matched before can match now.
  PersonList previous;
  const bool narrow = lastKey_.size() >= 2 && key.starts_with(lastKey_);
  if (narrow)
    previous.swap(results_);
  else
    results_.clear();
  const PersonList& source = narrow ? previous : persons_;

  const ZVPhoneSettings& s = *settings_;
  if (s.DialerSortOptimization()) {
    // Recently called contacts are filed first in every class; numbers
    // without a contact wait for the pass below.
    for (const auto& p : callHistory_)
      if (p->recordId() == -2) p->setPriority(ZVPerson::kExcluded);
    search(callHistory_, k.c_str(), k.size());
  }
  search(source, k.c_str(), k.size());
  if (s.DialerCallHistory()) {
    for (const auto& p : callHistory_)
      p->setPriority(p->priority() & ~ZVPerson::kExcluded);
    search(callHistory_, k.c_str(), k.size());
  }

  size_t total = 0;
  for (uint32_t n : cache_searchs_count_) total += n;
  results_.reserve(total + 2);
  for (int c = 0; c < kClasses; ++c)
    for (uint32_t i = 0; i < cache_searchs_count_[c]; ++i)
      results_.push_back(*cache_searchs_[c][i]);
  previous.clear();
  for (const auto& p : results_)
    p->setPriority(p->priority() & ~ZVPerson::kMatched);

  if (priorityDict_) {
    auto entry = priorityDict_->find(key);
    if (entry != priorityDict_->end()) {
      auto row = std::make_shared<ZVPerson>();
      row->setPhoneNumberF(key);
      row->setNameFull(entry->second.stringValue());
      row->setPriority(ZVPerson::kPriorityList | ZVPerson::kExcluded);
      results_.insert(results_.begin(), std::move(row));
    }
  }
  if (!results_.empty() && results_.front()->getPhoneNumber() != key) {
    auto row = std::make_shared<ZVPerson>();
    row->setPhoneNumberF(key);
    row->setPriority(ZVPerson::kTypedNumber | ZVPerson::kExcluded);
    results_.push_back(std::move(row));
  }
  lastKey_ = key;
  return results_.size();
}

}  // namespace zv
