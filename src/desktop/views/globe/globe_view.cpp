#include "desktop/views/globe/globe_view.h"

#include "base/text/number.h"
#include "base/text/text.h"
#include "base/words/country_names.h"
#include "feeds/fetching/failure_words.h"
#include "gazetteer/gazetteer.h"

#include <algorithm>
#include <cmath>

namespace nimbara {

namespace {

constexpr std::string_view kEarthquakeColour = "#ff7a52";
constexpr double kTapReachPixels = 14;

std::string colourText(int colorIndex) {
  auto const color = SatelliteCatalog::colors()[static_cast<std::size_t>(colorIndex)];
  std::string text = "#";
  for (float const channel : {color.red, color.green, color.blue}) {
    constexpr char kDigits[] = "0123456789abcdef";
    int const value = static_cast<int>(std::lround(channel * 255));
    text += kDigits[value / 16];
    text += kDigits[value % 16];
  }
  return text;
}

SatelliteLayer::GroupIndices const* groupOf(GlobeCatalogue const& catalogue, std::uint32_t entry) {
  auto const found =
      std::ranges::find_if(catalogue.groups, [entry](SatelliteLayer::GroupIndices const& group) {
        return std::ranges::binary_search(group.indices, entry);
      });
  return found == catalogue.groups.end() ? nullptr : &*found;
}

bool isHidden(GlobeState const& state, SatelliteLayer::GroupIndices const& group) {
  auto const* const known = SatelliteCatalog::group(group.groupID);
  return known != nullptr && state.hidden.contains(legendName(*known));
}

bool isEntryHidden(GlobeState const& state, std::uint32_t entry) {
  auto const* const group = groupOf(*state.catalogue, entry);
  return group == nullptr || isHidden(state, *group);
}

bool isKnown(GlobeGroup const& group) {
  return group.state == GlobeGroup::State::fresh || group.state == GlobeGroup::State::stale;
}

std::string noteOf(GlobeGroup const& group, ViewContext const& context) {
  switch (group.state) {
    case GlobeGroup::State::failed:
      return group.failure ? failureText(*group.failure, context.texts)
                           : context.text("desktop.globe.failed");
    case GlobeGroup::State::stale:
      return context.texts.format("desktop.globe.stale", ageText(group.fetched, context.now, context.texts));
    case GlobeGroup::State::waiting:
      return context.text("desktop.globe.waiting");
    case GlobeGroup::State::fresh:
      break;
  }
  return {};
}

/// None of what has not been fetched is not known to be none.
void finish(LegendRow& row, std::optional<std::size_t> count) {
  row.count = count ? std::to_string(*count) : "–";
  row.sentence = row.title + (count ? ", " + row.count : "") + (row.note.empty() ? "" : ", " + row.note);
}

LegendRow earthquakeRow(GlobeState const& state, ViewContext const& context) {
  LegendRow row{std::string(kEarthquakeRow),
                context.text("desktop.globe.earthquakes"),
                {},
                std::string(kEarthquakeColour),
                !state.hidden.contains(kEarthquakeRow),
                {},
                {}};
  auto const count = std::ranges::count_if(*state.earthquakes, [](EarthquakeEvent const& event) {
    return event.magnitude >= kLeastShownMagnitude;
  });
  bool const isKnown = state.hasEarthquakes && (!state.earthquakeFailure || count > 0);
  if (!state.hasEarthquakes) row.note = context.text("desktop.globe.waiting");
  if (state.earthquakeFailure) row.note = failureText(*state.earthquakeFailure, context.texts);
  finish(row, isKnown ? std::optional(static_cast<std::size_t>(count)) : std::nullopt);
  return row;
}

/// "Germany", or the open sea.
std::string landBelow(SatelliteInfo const& info, ViewContext const& context) {
  std::string_view const code = describePlace({info.latitude, info.longitude}).countryCode;
  return code.empty() ? context.text("desktop.globe.openSea") : countryName(code, context.texts.language());
}

std::string speedText(double kmh, ViewContext const& context) {
  bool const isMetric = context.units.distance == DistanceUnit::km;
  return measured(display(kmh, context.units.distance), isMetric ? "km/h" : "mph");
}

/// Whole names before their beginnings, those before their parts; nothing when it is none of them.
std::optional<int> rankOf(std::string_view name, std::string_view lowered) {
  std::string const own = asciiLowered(name);
  auto const at = own.find(lowered);
  if (at == std::string::npos) return std::nullopt;
  if (own == lowered) return 0;
  return at == 0 ? 1 : 2;
}

bool isInPicture(GlobeCamera const& camera, PicturePoint at) {
  return at.x >= 0 && at.y >= 0 && at.x <= camera.width && at.y <= camera.height;
}

}  // namespace

std::vector<LegendRow> legendRows(GlobeState const& state, ViewContext const& context) {
  std::vector<LegendRow> rows;
  std::vector<std::optional<std::size_t>> counts;
  for (GlobeGroup const& group : state.groups) {
    std::string_view const name = legendName(group.group);
    auto found = std::ranges::find(rows, name, &LegendRow::name);
    if (found == rows.end()) {
      rows.push_back({std::string(name),
                      context.text(group.group.display),
                      {},
                      colourText(group.group.colorIndex),
                      !state.hidden.contains(name),
                      {},
                      {}});
      counts.emplace_back();
      found = rows.end() - 1;
    }
    auto& count = counts[static_cast<std::size_t>(found - rows.begin())];
    if (isKnown(group)) count = count.value_or(0) + group.count;
    if (found->note.empty()) found->note = noteOf(group, context);
  }
  for (std::size_t i = 0; i < rows.size(); ++i) finish(rows[i], counts[i]);
  rows.push_back(earthquakeRow(state, context));
  return rows;
}

LegendRow cloudRow(GlobeState const& state, std::string note, ViewContext const& context) {
  LegendRow row{std::string(kCloudRow),
                context.text("desktop.credit.clouds"),
                {},
                "#e8eef4",
                !state.hidden.contains(kCloudRow),
                std::move(note),
                {}};
  row.sentence = row.title + (row.note.empty() ? "" : ", " + row.note);
  return row;
}

SatelliteCard satelliteCard(GlobeState const& state, ViewContext const& context) {
  if (!state.chosen) return {};
  ChosenSatellite const& chosen = *state.chosen;
  std::string const kind = context.text(chosen.info.kind);
  std::string const group = context.text(chosen.groupKey);
  auto const* const indices = groupOf(*state.catalogue, chosen.entry);
  SatelliteCard card{true,
                     chosen.info.name,
                     kind == group ? kind : kind + " · " + group,
                     colourText(indices == nullptr ? 0 : indices->colorIndex),
                     {}};
  card.sentence = card.title + ", " + card.subtitle;
  for (CardRow const& row : satelliteCardRows(state, context))
    card.sentence += ", " + row.label + " " + row.value;
  return card;
}

std::vector<CardRow> satelliteCardRows(GlobeState const& state, ViewContext const& context) {
  if (!state.chosen) return {};
  SatelliteInfo const& info = state.chosen->info;
  auto const row = [&](char const* key, std::string value) {
    return CardRow{context.text(key), std::move(value)};
  };
  return {
      row("desktop.globe.altitude",
          measured(display(info.altitudeKm, context.units.distance), symbol(context.units.distance))),
      row("desktop.globe.speed", speedText(info.speedKmh, context)),
      row("desktop.globe.latitude", fixedDecimal(info.latitude, 2) + "°"),
      row("desktop.globe.longitude", fixedDecimal(info.longitude, 2) + "°"),
      row("desktop.globe.above", landBelow(info, context)),
      row("desktop.globe.period", context.texts.format("desktop.globe.minutes", info.periodMinutes)),
      row("desktop.globe.light",
          context.text(info.isSunlit ? "desktop.globe.sunlit" : "desktop.globe.shadow")),
      row("desktop.globe.number", info.id),
  };
}

std::optional<Vector3> satellitePosition(GlobeState const& state, std::uint32_t entry) {
  auto const& frame = *state.frame;
  if (frame.positions.size() < (std::size_t{entry} + 1) * 3 ||
      !(frame.colorData[std::size_t{entry} * 4 + 3] > 0))
    return std::nullopt;
  float const* const p = &frame.positions[std::size_t{entry} * 3];
  return Vector3{p[0], p[1], p[2]};
}

GlobeLabel globeLabel(std::string text, Vector3 const& point, GlobeCamera const& camera) {
  GlobeLabel label;
  label.spoken = text;
  label.text = std::move(text);
  GlobeSight const sight(camera);
  auto const at = sight.project(point);
  if (!at) return label;
  label.x = at->x;
  label.y = at->y;
  label.isShown = isInPicture(camera, *at) && !sight.isHiddenByEarth(point);
  return label;
}

std::vector<GlobeLabel> globeLabels(GlobeState const& state, std::optional<Place> const& place,
                                    GlobeCamera const& camera) {
  std::vector<GlobeLabel> labels;
  if (place) {
    labels.push_back(globeLabel(place->name, directionTo(place->coordinate), camera));
    labels.back().isPlace = true;
  }
  std::vector<std::uint32_t> entries;
  std::ranges::copy_if(state.catalogue->named, std::back_inserter(entries),
                       [&](std::uint32_t entry) { return !isEntryHidden(state, entry); });
  if (state.chosen && std::ranges::count(entries, state.chosen->entry) == 0)
    entries.push_back(state.chosen->entry);
  for (std::uint32_t const entry : entries) {
    auto const point = satellitePosition(state, entry);
    if (point) labels.push_back(globeLabel(state.catalogue->names[entry], *point, camera));
  }
  return labels;
}

std::vector<SatelliteMatch> satelliteMatches(GlobeState const& state, std::string_view text, std::size_t most,
                                             ViewContext const& context) {
  GlobeCatalogue const& catalogue = *state.catalogue;
  std::string const lowered = asciiLowered(trimmed(text));
  std::vector<std::pair<int, std::uint32_t>> ranked;
  for (std::uint32_t entry = 0; entry < catalogue.names.size(); ++entry) {
    auto const rank = rankOf(catalogue.names[entry], lowered);
    bool const isNamed = std::ranges::count(catalogue.named, entry) > 0;
    if (rank) ranked.emplace_back(isNamed ? *rank - 1 : *rank, entry);
  }
  auto const end = ranked.begin() + static_cast<std::ptrdiff_t>(std::min(most, ranked.size()));
  std::ranges::partial_sort(ranked, end);
  std::vector<SatelliteMatch> matches;
  for (auto each = ranked.begin(); each != end; ++each) {
    auto const* const group = groupOf(catalogue, each->second);
    auto const* const known = SatelliteCatalog::group(group->groupID);
    matches.push_back({catalogue.names[each->second], context.text(known->display),
                       colourText(known->colorIndex), static_cast<double>(each->second)});
  }
  return matches;
}

std::string globeStatus(GlobeState const& state, ViewContext const& context) {
  auto const failed = std::ranges::find(state.groups, GlobeGroup::State::failed, &GlobeGroup::state);
  bool const isEmpty = state.catalogue->names.empty();
  if (state.isLoading && isEmpty && failed == state.groups.end())
    return context.text("desktop.globe.loading");
  if (isEmpty && failed != state.groups.end()) return context.text("desktop.globe.none");
  return {};
}

std::optional<std::uint32_t> satelliteAt(GlobeState const& state, GlobeCamera const& camera,
                                         PicturePoint at) {
  std::vector<std::uint32_t> shown;
  for (auto const& group : state.catalogue->groups) {
    if (!isHidden(state, group)) shown.insert(shown.end(), group.indices.begin(), group.indices.end());
  }
  std::erase_if(shown, [&](std::uint32_t entry) { return !satellitePosition(state, entry); });
  return nearestInPicture(camera, at, kTapReachPixels, state.frame->positions, shown);
}

}  // namespace nimbara
