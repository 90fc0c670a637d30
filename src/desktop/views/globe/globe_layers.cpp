#include "desktop/views/globe/globe_layers.h"

#include "app/words/hazards/storm_text.h"
#include "feeds/fetching/failure_words.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace nimbara {

namespace {

constexpr double kRadians = std::numbers::pi / 180;
constexpr double kAboveGround = 1.003;
constexpr double kPiece = 1;  // degrees; a longer straight line would run through the earth
constexpr std::uint32_t kExtentColour = 0x8fe8d6a0;
constexpr std::string_view kExtentLegend = "#8fe8d6", kStormLegend = "#e88a1a";
constexpr std::uint32_t kOpaque = 0xff, kFaint = 0x70;

Vector3 raised(Vector3 const& v) {
  double const longer = kAboveGround / std::sqrt(dot(v, v));
  return {v[0] * longer, v[1] * longer, v[2] * longer};
}

/// At most `kPiece` long each, the shorter way around the earth.
std::vector<Vector3> wayBetween(Coordinate from, Coordinate to) {
  Vector3 const a = directionTo(from), b = directionTo(to);
  double const degrees = std::acos(std::clamp(dot(a, b), -1.0, 1.0)) / kRadians;
  int const pieces = std::max(1, static_cast<int>(std::ceil(degrees / kPiece)));
  std::vector<Vector3> way;
  for (int i = 0; i <= pieces; ++i) {
    double const t = static_cast<double>(i) / pieces;
    // Of two opposite points no way is the shorter, and the middle of both is nowhere.
    Vector3 const between{a[0] + t * (b[0] - a[0]), a[1] + t * (b[1] - a[1]), a[2] + t * (b[2] - a[2])};
    way.push_back(dot(between, between) > 1e-6 ? raised(between) : raised(a));
  }
  return way;
}

/// Along a parallel or a meridian.
void appendEdge(Coordinate from, Coordinate to, std::vector<GlobeStroke>& strokes) {
  double const north = to.latitude - from.latitude, east = to.longitude - from.longitude;
  int const pieces = std::max(1, static_cast<int>(std::ceil(std::max(std::abs(north), std::abs(east)))));
  auto const at = [&](int i) {
    double const t = static_cast<double>(i) / pieces;
    return raised(directionTo({from.latitude + t * north, from.longitude + t * east}));
  };
  for (int i = 0; i < pieces; ++i) strokes.push_back({at(i), at(i + 1), kExtentColour});
}

std::vector<double> sortedOnce(std::vector<double> values) {
  std::ranges::sort(values);
  values.erase(std::ranges::unique(values).begin(), values.end());
  return values;
}

/// The rectangles into which the edges of all boxes cut the world.
class BoxGrid {
 public:
  explicit BoxGrid(std::span<GeoBox const> boxes) : boxes_(boxes) {
    std::vector<double> parallels, meridians;
    for (GeoBox const& box : boxes) {
      parallels.insert(parallels.end(), {box.south, box.north});
      meridians.insert(meridians.end(), {box.west, box.east});
    }
    south_ = sortedOnce(std::move(parallels));
    west_ = sortedOnce(std::move(meridians));
  }

  /// An edge lies where of two neighbours one is in a box.
  std::vector<GlobeStroke> edges() const {
    std::vector<GlobeStroke> strokes;
    for (std::size_t row = 0; row < south_.size(); ++row) {
      for (std::size_t column = 0; column < west_.size(); ++column) {
        bool const isIn = isWithin(row, column);
        bool const isBelowIn = row > 0 && isWithin(row - 1, column);
        bool const isLeftIn = column > 0 && isWithin(row, column - 1);
        Coordinate const corner{south_[row], west_[column]};
        if (isIn != isBelowIn) appendEdge(corner, {south_[row], west_[column + 1]}, strokes);
        if (isIn != isLeftIn) appendEdge(corner, {south_[row + 1], west_[column]}, strokes);
      }
    }
    return strokes;
  }

 private:
  bool isWithin(std::size_t row, std::size_t column) const {
    if (row + 1 >= south_.size() || column + 1 >= west_.size()) return false;
    Coordinate const middle{(south_[row] + south_[row + 1]) / 2, (west_[column] + west_[column + 1]) / 2};
    return std::ranges::any_of(boxes_, [middle](GeoBox const& box) { return box.contains(middle); });
  }

  std::span<GeoBox const> boxes_;
  std::vector<double> south_, west_;
};

/// So far from a place, in a direction from north through east.
Vector3 around(Coordinate place, double degrees, double direction) {
  Vector3 const up = directionTo(place);
  double const longitude = place.longitude * kRadians;
  Vector3 const east{-std::sin(longitude), std::cos(longitude), 0};
  Vector3 const north{-up[2] * east[1], up[2] * east[0], up[0] * east[1] - up[1] * east[0]};
  double const far = degrees * kRadians, turn = direction * kRadians;
  double const n = std::sin(far) * std::cos(turn), e = std::sin(far) * std::sin(turn);
  Vector3 at{};
  for (std::size_t i = 0; i < 3; ++i) at[i] = std::cos(far) * up[i] + n * north[i] + e * east[i];
  return raised(at);
}

void appendCircle(Coordinate place, double degrees, std::uint32_t rgba, std::vector<GlobeStroke>& strokes) {
  constexpr int kCorners = 24;
  for (int i = 0; i < kCorners; ++i) {
    strokes.push_back({around(place, degrees, 360.0 * i / kCorners),
                       around(place, degrees, 360.0 * (i + 1) / kCorners), rgba});
  }
}

/// An eye with two arms, which trail behind the wind that turns around it.
void appendSign(Coordinate place, std::uint32_t rgba, std::vector<GlobeStroke>& strokes) {
  constexpr double kEye = 1, kReach = 1.2, kSweep = 100;
  constexpr int kPieces = 6;
  double const turn = place.latitude < 0 ? -1 : 1;
  appendCircle(place, kEye, rgba, strokes);
  for (double const side : {90.0, 270.0}) {
    auto const at = [&](int i) {
      double const t = static_cast<double>(i) / kPieces;
      return around(place, kEye + kReach * t, turn * (side - kSweep * t));
    };
    for (int i = 0; i < kPieces; ++i) strokes.push_back({at(i), at(i + 1), rgba});
  }
}

std::uint32_t colourOf(MapTrack const& track, std::uint32_t opacity) {
  return stormColour(track.category) << 8 | opacity;
}

void appendWay(MapTrack const& track, std::vector<GlobeStroke>& strokes) {
  std::size_t piece = 0;
  for (std::size_t i = 1; i < track.points.size(); ++i) {
    auto const way = wayBetween(track.points[i - 1], track.points[i]);
    for (std::size_t j = 1; j < way.size(); ++j) {
      bool const isGap = i >= track.firstForecast && piece++ % 2 == 1;
      if (!isGap) strokes.push_back({way[j - 1], way[j], colourOf(track, kOpaque)});
    }
  }
}

}  // namespace

std::vector<GlobeStroke> extentStrokes(std::span<GeoBox const> boxes) {
  return BoxGrid(boxes).edges();
}

std::vector<GlobeStroke> radarExtent() {
  std::vector<GlobeStroke> strokes;
  GeoBox const* drawn = nullptr;
  for (RadarSupplier const& supplier : radarSuppliers()) {
    // Suppliers of the same radars stand next to each other.
    if (supplier.boxes.empty() || supplier.boxes.data() == drawn) continue;
    drawn = supplier.boxes.data();
    auto const edges = extentStrokes(supplier.boxes);
    strokes.insert(strokes.end(), edges.begin(), edges.end());
  }
  return strokes;
}

std::vector<GlobeStroke> stormStrokes(std::span<MapTrack const> tracks) {
  constexpr double kKmPerDegree = kEarthRadiusKm * kRadians;
  std::vector<GlobeStroke> strokes;
  for (MapTrack const& track : tracks) {
    double const gales = track.galesKm[track.firstForecast - 1] / kKmPerDegree;
    if (gales > 0) appendCircle(track.at(), gales, colourOf(track, kFaint), strokes);
    appendWay(track, strokes);
    appendSign(track.at(), colourOf(track, kOpaque), strokes);
  }
  return strokes;
}

std::vector<InstanceRow> strokeRows(std::span<GlobeStroke const> strokes) {
  std::vector<InstanceRow> rows;
  rows.reserve(strokes.size());
  for (GlobeStroke const& stroke : strokes) {
    auto const from = scenePoint(stroke.from), to = scenePoint(stroke.to);
    InstanceRow row{{1, 0, 0, from[0]}, {0, 1, 0, from[1]}, {0, 0, 1, from[2]}, {}, {}};
    for (std::size_t i = 0; i < 4; ++i)
      row.color[i] = static_cast<float>(stroke.rgba >> (24 - 8 * i) & 0xff) / 255;
    row.data = {to[0], to[1], to[2], 0};
    rows.push_back(row);
  }
  return rows;
}

std::optional<std::pair<PicturePoint, PicturePoint>> seenStroke(GlobeStroke const& stroke,
                                                                GlobeSight const& sight) {
  if (sight.isHiddenByEarth(stroke.from) || sight.isHiddenByEarth(stroke.to)) return std::nullopt;
  auto const from = sight.project(stroke.from), to = sight.project(stroke.to);
  if (!from || !to) return std::nullopt;
  return std::pair(*from, *to);
}

std::vector<GlobeLabel> stormLabels(std::span<MapTrack const> tracks, GlobeCamera const& camera) {
  std::vector<GlobeLabel> labels;
  for (MapTrack const& track : tracks) {
    GlobeLabel& label = labels.emplace_back(globeLabel(track.label, directionTo(track.at()), camera));
    label.isStorm = true;
    label.spoken = track.title + (track.note.empty() ? "" : ", " + track.note);
  }
  return labels;
}

LegendRow stormRow(GlobeState const& state, SupplementState const* supplement, ViewContext const& context) {
  LegendRow row{std::string(kStormRow),
                context.text("desktop.hazard.storms"),
                "–",
                std::string(kStormLegend),
                !state.hidden.contains(kStormRow),
                {},
                {}};
  auto const* const storms = supplement != nullptr ? &supplement->activeStorms : nullptr;
  if (storms == nullptr || !storms->isSettled()) {
    row.note = context.text("desktop.globe.waiting");
  } else if (!storms->isCurrent()) {
    row.note =
        storms->failure ? failureText(*storms->failure, context.texts) : context.text("desktop.globe.failed");
  } else {
    HazardWords const words{context.texts, context.units, context.fallback, context.now};
    auto const misses = stormMissLines(storms->data.misses, words);
    if (!misses.empty()) row.note = misses.front();
  }
  // What is left of an earlier answer is drawn, so it is counted.
  bool const isKnown = storms != nullptr && (storms->isCurrent() || !storms->data.storms.empty());
  if (isKnown) row.count = std::to_string(storms->data.storms.size());
  row.sentence = row.title + (isKnown ? ", " + row.count : "") + (row.note.empty() ? "" : ", " + row.note);
  return row;
}

LegendRow radarRow(GlobeState const& state, ViewContext const& context) {
  std::string names;
  GeoBox const* drawn = nullptr;
  for (RadarSupplier const& supplier : radarSuppliers()) {
    if (supplier.boxes.empty() || supplier.boxes.data() == drawn) continue;
    drawn = supplier.boxes.data();
    names += (names.empty() ? "" : ", ") + std::string(supplier.name);
  }
  LegendRow row{std::string(kRadarRow),
                context.text("desktop.globe.radar"),
                {},
                std::string(kExtentLegend),
                !state.hidden.contains(kRadarRow),
                context.texts.format("desktop.globe.radar.others", names),
                {}};
  row.sentence = row.title + ", " + row.note;
  return row;
}

}  // namespace nimbara
