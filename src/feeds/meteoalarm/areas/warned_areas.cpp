#include "feeds/meteoalarm/areas/warned_areas.h"

#include "feeds/cap/cap_language.h"

#include <algorithm>
#include <array>
#include <bit>
#include <set>
#include <unordered_map>

namespace nimbara {

namespace {

std::string momentKey(std::optional<Instant> moment) {
  return moment ? std::to_string(moment->time_since_epoch().count()) : "-";
}

std::string codesKey(RawEntry const& entry) {
  std::set<std::string> codes;
  for (std::string const& code : entry.nuts3Codes) codes.insert(std::string(kNuts3Registry) + ":" + code);
  for (RegionCode const& code : entry.otherCodes) codes.insert(code.registry + ":" + code.code);
  std::string key;
  for (std::string const& code : codes) key += "\n" + code;
  return key.empty() ? key : "code" + key;
}

/// The bytes, since outlines have thousands of corners.
void append(std::string& key, Coordinate corner) {
  for (double const value : {corner.latitude, corner.longitude}) {
    auto const bytes = std::bit_cast<std::array<char, sizeof(double)>>(value);
    key.append(bytes.data(), bytes.size());
  }
}

std::string shapesKey(RawEntry const& entry) {
  std::string key;
  for (WarningPolygon const& polygon : entry.polygons) {
    key += "\nring ";
    for (Coordinate const corner : polygon) append(key, corner);
  }
  for (WarningCircle const& circle : entry.circles) {
    key += "\ncircle " + std::to_string(circle.radiusKm) + " ";
    append(key, circle.center);
  }
  return key;
}

/// Of an area that is only named: its place in the message, which is the same in all of its languages.
std::string placeInMessage(RawEntry const& entry) {
  if (entry.identifier.empty() || !entry.infoIndex || !entry.areaIndex) return {};
  return "message\n" + entry.identifier + "\n" + std::to_string(*entry.areaIndex) + "\n" + entry.severity +
         "\n" + momentKey(entry.onset) + "\n" + momentKey(entry.expires);
}

/// What tells the entry's area from others beside its name; empty when nothing does.
std::string areaKey(RawEntry const& entry) {
  std::string const codes = codesKey(entry);
  std::string const shapes = shapesKey(entry);
  return codes.empty() && shapes.empty() ? placeInMessage(entry) : codes + shapes;
}

/// Gathers entries into areas.
class Areas {
 public:
  explicit Areas(std::string_view language) : language_(language) {}

  /// Its index among the areas; nothing for an entry without a name.
  std::optional<std::size_t> add(ToldEntry const& told) {
    RawEntry const& entry = told.entry();
    if (entry.areaDesc.empty()) return std::nullopt;
    std::string const key = areaKey(entry);
    Area* area = known("name\n" + entry.areaDesc);
    if (area == nullptr && !key.empty()) area = known(key);
    bool const isNew = area == nullptr;
    if (isNew) area = &areas_.emplace_back();
    std::size_t const index = static_cast<std::size_t>(area - areas_.data());
    indexes_.try_emplace("name\n" + entry.areaDesc, index);
    if (!key.empty()) indexes_.try_emplace(key, index);
    take(*area, told, isNew);
    return index;
  }

  std::vector<WarnedArea> take() && {
    std::vector<WarnedArea> areas;
    areas.reserve(areas_.size());
    for (Area& area : areas_) areas.push_back(std::move(area.shown));
    return areas;
  }

 private:
  struct Area {
    WarnedArea shown;
    int rank = 0;
  };

  Area* known(std::string const& key) {
    auto const found = indexes_.find(key);
    return found == indexes_.end() ? nullptr : &areas_[found->second];
  }

  void take(Area& area, ToldEntry const& told, bool isNew) const {
    int const rank = languageRank(told.areaLanguage, language_);
    if (isNew || rank < area.rank) {
      area.shown.name = told.entry().areaDesc;
      area.rank = rank;
    }
    auto const distance = told.selected.distanceKm;
    if (isNew) area.shown.distanceKm = distance;
    // Nothing, which is "within", is less than any distance.
    area.shown.distanceKm = std::min(area.shown.distanceKm, distance);
  }

  std::string_view language_;
  std::vector<Area> areas_;
  std::unordered_map<std::string, std::size_t> indexes_;
};

}  // namespace

std::vector<WarnedArea> warnedAreas(std::span<ToldEntry const* const> entries, std::string_view language) {
  Areas areas(language);
  for (ToldEntry const* const told : entries) areas.add(*told);
  return std::move(areas).take();
}

std::vector<std::vector<ToldEntry const*>> entriesByArea(std::span<ToldEntry const* const> entries) {
  Areas areas({});
  std::vector<std::vector<ToldEntry const*>> byArea;
  std::vector<ToldEntry const*> nameless;
  for (ToldEntry const* const told : entries) {
    auto const area = areas.add(*told);
    if (area && *area == byArea.size()) byArea.emplace_back();
    (area ? byArea[*area] : nameless).push_back(told);
  }
  if (!nameless.empty()) byArea.push_back(std::move(nameless));
  return byArea;
}

}  // namespace nimbara
