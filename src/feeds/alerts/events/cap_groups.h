// Groups of numbers that grow together: which of many messages are one event. Pure.
#pragma once

#include <cstddef>
#include <vector>

namespace nimbara {

class Groups {
 public:
  std::size_t add() {
    parents_.push_back(parents_.size());
    return parents_.size() - 1;
  }
  std::size_t size() const { return parents_.size(); }
  std::size_t of(std::size_t one) {
    while (parents_[one] != one) one = parents_[one] = parents_[parents_[one]];
    return one;
  }
  void join(std::size_t a, std::size_t b) { parents_[of(b)] = of(a); }

 private:
  std::vector<std::size_t> parents_;
};

}  // namespace nimbara
