// Nearest neighbours on the sphere. The records stand in the order of a balanced k-d tree: the middle one
// divides the others by its x, those on either side are divided by their y, then z, then x again; nothing
// else is stored.
#pragma once

#include "gazetteer/table_layout.h"

#include <optional>

namespace nimbara::gazetteer {

inline constexpr double kEverywhereKm = 3 * kEarthRadiusKm;

template <class PointOf, class IsWanted>
class SphereTree {
 public:
  /// `pointOf(i)` gives the PointRecord of the i-th record, `isWanted(i)` whether it may be an answer.
  SphereTree(std::size_t size, PointOf pointOf, IsWanted isWanted)
      : size_(size), pointOf_(pointOf), isWanted_(isWanted) {}

  /// The number of the nearest wanted record within `reachKm` of the straight line through the earth.
  std::optional<std::size_t> nearest(Coordinate target, double reachKm) {
    target_ = spherePoint(pointRecord(target));
    best_.reset();
    bestSquare_ = reachKm * reachKm / (kEarthRadiusKm * kEarthRadiusKm);
    visit(0, size_, 0);
    return best_;
  }

 private:
  void visit(std::size_t first, std::size_t end, std::size_t axis) {
    if (first >= end) return;
    std::size_t const middle = first + (end - first) / 2;
    SpherePoint const point = spherePoint(pointOf_(middle));
    consider(middle, point);
    double const beyond = target_[axis] - point[axis];
    std::size_t const next = (axis + 1) % 3;
    bool const before = beyond < 0;
    before ? visit(first, middle, next) : visit(middle + 1, end, next);
    if (beyond * beyond >= bestSquare_) return;
    before ? visit(middle + 1, end, next) : visit(first, middle, next);
  }

  void consider(std::size_t number, SpherePoint const& point) {
    double square = 0;
    for (std::size_t i = 0; i < 3; ++i) square += (point[i] - target_[i]) * (point[i] - target_[i]);
    if (square >= bestSquare_ || !isWanted_(number)) return;
    best_ = number;
    bestSquare_ = square;
  }

  std::size_t size_;
  PointOf pointOf_;
  IsWanted isWanted_;
  SpherePoint target_{};
  std::optional<std::size_t> best_;
  double bestSquare_ = 0;
};

}  // namespace nimbara::gazetteer
