#include "search/number_index.h"

#include <algorithm>
#include <bit>

namespace zv {

namespace {

std::string_view numberOf(const ZVPerson& person) {
  const char* number = person.phoneNumber();
  return number ? std::string_view(number, person.phoneNumberLength())
                : std::string_view();
}

// FNV-1a, then a final mix so that the low bits used for the slot depend on
// every byte (numbers often differ only in their last digits).
uint32_t hashNumber(std::string_view number) {
  uint32_t h = 2166136261u;
  for (unsigned char c : number) h = (h ^ c) * 16777619u;
  h ^= h >> 16;
  h *= 0x85ebca6bu;
  h ^= h >> 13;
  h *= 0xc2b2ae35u;
  h ^= h >> 16;
  return h;
}

}  // namespace

void NumberIndex::clear() {
  slots_.clear();
  count_ = 0;
}

void NumberIndex::build(const PersonList& list) {
  clear();
  // Under two thirds full, so that probe runs stay short.
  slots_.assign(std::bit_ceil(list.size() + list.size() / 2 + 1), Slot{});
  const size_t mask = slots_.size() - 1;
  // The slots are hit at random, so each is fetched a few persons ahead of
  // its use; the persons themselves are read in memory order.
  constexpr size_t kAhead = 8;
  uint32_t hashes[kAhead];
  auto hashAt = [&](size_t i) {
    uint32_t hash = hashNumber(numberOf(*list[i]));
    __builtin_prefetch(&slots_[hash & mask], 1);
    hashes[i % kAhead] = hash;
  };
  for (size_t i = 0; i < std::min(kAhead, list.size()); ++i) hashAt(i);
  for (size_t i = 0; i < list.size(); ++i) {
    const uint32_t hash = hashes[i % kAhead];
    if (i + kAhead < list.size()) hashAt(i + kAhead);
    const std::string_view number = numberOf(*list[i]);
    for (size_t at = hash & mask;; at = (at + 1) & mask) {
      Slot& slot = slots_[at];
      if (slot.position == 0) {
        slot = {hash, static_cast<uint32_t>(i + 1)};
        ++count_;
        break;
      }
      if (slot.hash == hash && numberOf(*list[slot.position - 1]) == number) {
        slot.position = static_cast<uint32_t>(i + 1);  // the later one wins
        break;
      }
    }
  }
}

const NumberIndex::PersonRef* NumberIndex::find(const PersonList& list,
                                                std::string_view number) const {
  if (slots_.empty()) return nullptr;
  const size_t mask = slots_.size() - 1;
  const uint32_t hash = hashNumber(number);
  for (size_t at = hash & mask;; at = (at + 1) & mask) {
    const Slot& slot = slots_[at];
    if (slot.position == 0) return nullptr;
    if (slot.position > list.size()) continue;  // built over another list
    const auto& person = list[slot.position - 1];
    if (slot.hash == hash && numberOf(*person) == number) return &person;
  }
}

}  // namespace zv
