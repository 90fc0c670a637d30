#include "gazetteer/country_outlines.h"

#include "gazetteer/tables.h"

namespace nimbara::gazetteer {

namespace {

bool contains(OutlineRecord const& box, PointRecord point) {
  return point.latitude >= box.southWest.latitude && point.latitude <= box.northEast.latitude &&
         point.longitude >= box.southWest.longitude && point.longitude <= box.northEast.longitude;
}

/// Whether the edge passes the point's latitude to the east of it.
bool passesEastOf(PointRecord point, PointRecord a, PointRecord b) {
  if ((a.latitude > point.latitude) == (b.latitude > point.latitude)) return false;
  double const share = double(point.latitude - a.latitude) / (double(b.latitude) - a.latitude);
  return point.longitude < a.longitude + share * (double(b.longitude) - a.longitude);
}

bool enclosedByOdd(RingRecord const& ring, PointRecord point) {
  Table<PointRecord> const points(Section::points);
  bool odd = false;
  PointRecord previous = points[ring.firstPoint + ring.pointCount - 1];
  for (std::uint32_t i = 0; i < ring.pointCount; ++i) {
    PointRecord const next = points[ring.firstPoint + i];
    odd ^= passesEastOf(point, previous, next);
    previous = next;
  }
  return odd;
}

bool encloses(OutlineRecord const& outline, PointRecord point) {
  if (!contains(outline, point)) return false;
  Table<RingRecord> const rings(Section::rings);
  bool odd = false;
  for (std::uint32_t i = 0; i < outline.ringCount; ++i)
    odd ^= enclosedByOdd(rings[outline.firstRing + i], point);
  return odd;
}

}  // namespace

std::uint16_t countryWithin(Coordinate coordinate) {
  PointRecord const point = pointRecord(coordinate);
  Table<OutlineRecord> const outlines(Section::outlines);
  for (std::size_t i = 0; i < outlines.size(); ++i) {
    OutlineRecord const outline = outlines[i];
    if (encloses(outline, point)) return outline.country;
  }
  return kNone;
}

}  // namespace nimbara::gazetteer
