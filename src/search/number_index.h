// NumberIndex: finds the person of a list by its (filtered) phone number.
//
// Built over one PersonList, it maps each person's number bytes (a person
// without a number counts as the empty number) to the person's position; a
// number shared by several persons maps to the last of them in list order.
// It keeps positions, not references, and compares keys against the list's
// persons at lookup, so it must be rebuilt whenever the list changes and
// looked up with that same list. Open addressing over one flat array of
// (hash, position) slots: building it for 150,000 persons allocates once
// and touches no person twice.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "search/person.h"

namespace zv {

class NumberIndex {
 public:
  using PersonRef = std::shared_ptr<ZVPerson>;
  using PersonList = std::vector<PersonRef>;

  void build(const PersonList& list);
  void clear();
  // The person of `list` whose number is `number`, or null.
  const PersonRef* find(const PersonList& list, std::string_view number) const;
  size_t size() const { return count_; }

 private:
  struct Slot {
    uint32_t hash = 0;
    uint32_t position = 0;  // list index + 1; 0 for an empty slot
  };
  std::vector<Slot> slots_;
  size_t count_ = 0;
};

}  // namespace zv
