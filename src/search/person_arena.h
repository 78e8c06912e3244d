// PersonArena: makes persons that lie back to back in large blocks, in the
// order they are made, so that a list built in that order is walked through
// memory sequentially by the search. Every person it makes shares ownership
// of all of the arena's blocks: they are freed when the last reference to
// any of its persons goes. Persons that the arena reserved but never handed
// out cost only their (inline) storage.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "search/person.h"

namespace zv {

class PersonArena {
 public:
  // `expected`: how many persons the first block holds (0: a default).
  explicit PersonArena(size_t expected = 0);
  std::shared_ptr<ZVPerson> make();

 private:
  struct Blocks {
    std::vector<std::unique_ptr<ZVPerson[]>> list;
  };
  std::shared_ptr<Blocks> blocks_;
  size_t next_ = 0;
  size_t capacity_ = 0;
  size_t block_size_;
};

}  // namespace zv
