// The few towns from which the region of any coordinate can be told.
#pragma once

#include "table_file.h"

#include <vector>

namespace nimbara::gazetteer {

/// Leaves out every record whose country and region the nearest remaining one of its country tells as well.
std::vector<LandmarkRecord> condensed(std::vector<LandmarkRecord> const& all);

/// Brings `records` into the order of a balanced tree (src/gazetteer/sphere_tree.h).
template <class Record, class PointOf>
void orderAsTree(Record* first, Record* last, PointOf const& pointOf, std::size_t axis = 0);

}  // namespace nimbara::gazetteer

#include <algorithm>

template <class Record, class PointOf>
void nimbara::gazetteer::orderAsTree(Record* first, Record* last, PointOf const& pointOf, std::size_t axis) {
  if (last - first < 2) return;
  Record* const middle = first + (last - first) / 2;
  std::nth_element(first, middle, last, [&](Record const& a, Record const& b) {
    return spherePoint(pointOf(a))[axis] < spherePoint(pointOf(b))[axis];
  });
  orderAsTree(first, middle, pointOf, (axis + 1) % 3);
  orderAsTree(middle + 1, last, pointOf, (axis + 1) % 3);
}
