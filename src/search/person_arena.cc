#include "search/person_arena.h"

namespace zv {

namespace {
constexpr size_t kDefaultBlock = 4096;
}

PersonArena::PersonArena(size_t expected)
    : blocks_(std::make_shared<Blocks>()),
      block_size_(expected ? expected : kDefaultBlock) {}

std::shared_ptr<ZVPerson> PersonArena::make() {
  if (next_ == capacity_) {
    // Default-initialised: the constructor sets every field that is read
    // before it is written, so zeroing the whole block first only costs.
    blocks_->list.push_back(
        std::make_unique_for_overwrite<ZVPerson[]>(block_size_));
    next_ = 0;
    capacity_ = block_size_;
    block_size_ = kDefaultBlock;
  }
  // Shares the arena's ownership, points at the one person.
  return std::shared_ptr<ZVPerson>(blocks_, &blocks_->list.back()[next_++]);
}

}  // namespace zv
