// The phone numbers chosen on the recipient-group screens, in the order
// they were chosen, each at most once. (The platform keeps them as the keys
// of a dictionary with an empty marker value; the order of choice is what
// the composer then gets.)
#pragma once

#include <algorithm>
#include <string>
#include <vector>

namespace zv {

class SMSNumberSelection {
 public:
  bool contains(const std::string& number) const {
    return std::find(numbers_.begin(), numbers_.end(), number) !=
           numbers_.end();
  }
  void add(const std::string& number) {
    if (!contains(number)) numbers_.push_back(number);
  }
  void remove(const std::string& number) {
    numbers_.erase(std::remove(numbers_.begin(), numbers_.end(), number),
                   numbers_.end());
  }
  size_t size() const { return numbers_.size(); }
  bool empty() const { return numbers_.empty(); }
  const std::vector<std::string>& numbers() const { return numbers_; }

 private:
  std::vector<std::string> numbers_;
};

}  // namespace zv
