#include "search/person_arena.h"

namespace zv {

namespace {
constexpr size_t kDefaultBlock = 4096;
}

PersonArena::PersonArena(size_t expected)
    : blocks_(std::make_shared<Blocks>()),
      blockSize_(expected ? expected : kDefaultBlock) {}

std::shared_ptr<ZVPerson> PersonArena::make() {
  if (next_ == capacity_) {
    // Default-initialised: the constructor sets every field that is read
    // before it is written, so zeroing the whole block first only costs.
    blocks_->list.push_back(
        std::make_unique_for_overwrite<ZVPerson[]>(blockSize_));
    next_ = 0;
    capacity_ = blockSize_;
    blockSize_ = kDefaultBlock;
  }
  // Shares the arena's ownership, points at the one person.
  return std::shared_ptr<ZVPerson>(blocks_, &blocks_->list.back()[next_++]);
}

}  // namespace zv
