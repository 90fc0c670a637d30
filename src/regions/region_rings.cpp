#include "regions/region_outline.h"

#include <algorithm>
#include <map>

namespace nimbara {

namespace {

/// Puts arcs end to end.
class Chain {
 public:
  explicit Chain(std::vector<OutlineArc> const& arcs) : arcs_(arcs), isUsed_(arcs.size(), false) {
    for (std::size_t i = 0; i < arcs.size(); ++i) {
      isUsed_[i] = arcs[i].size() < 2;
      if (isUsed_[i]) continue;
      byEnd_.emplace(arcs[i].front(), i);
      byEnd_.emplace(arcs[i].back(), i);
    }
  }

  std::vector<OutlineRing> rings() {
    std::vector<OutlineRing> rings;
    for (std::size_t i = 0; i < arcs_.size(); ++i) {
      if (isUsed_[i]) continue;
      isUsed_[i] = true;
      OutlineRing ring = arcs_[i];
      while (ring.back() != ring.front() && lengthen(ring)) {
      }
      if (ring.back() != ring.front()) continue;
      ring.pop_back();
      rings.push_back(std::move(ring));
    }
    return rings;
  }

 private:
  bool lengthen(OutlineRing& ring) {
    auto const [first, last] = byEnd_.equal_range(ring.back());
    auto const next = std::find_if(first, last, [&](auto const& end) { return !isUsed_[end.second]; });
    if (next == last) return false;
    isUsed_[next->second] = true;
    OutlineArc const& arc = arcs_[next->second];
    if (arc.front() == ring.back()) {
      ring.insert(ring.end(), arc.begin() + 1, arc.end());
    } else {
      ring.insert(ring.end(), arc.rbegin() + 1, arc.rend());
    }
    return true;
  }

  std::vector<OutlineArc> const& arcs_;
  std::vector<bool> isUsed_;
  std::multimap<OutlinePoint, std::size_t> byEnd_;
};

}  // namespace

std::vector<OutlineRing> ringsOf(std::vector<OutlineArc> const& arcs) {
  return Chain(arcs).rings();
}

}  // namespace nimbara
