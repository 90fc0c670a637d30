#include "app/words/hazards/storm_text.h"

#include "base/words/compass_point.h"
#include "base/words/list_text.h"
#include "feeds/fetching/failure_words.h"
#include "feeds/storms/storm_merge.h"
#include "providers/common/compass.h"

namespace nimbara {

namespace {

/// A track that does not bring the storm nearer than it is by so much is no approach.
constexpr double kNearerKm = 5;
/// Nobody has to know how near a storm on another ocean comes.
constexpr double kFarthestKm = 3000;

void add(std::string& text, std::string const& part) {
  if (part.empty()) return;
  text += (text.empty() ? "" : "; ") + part;
}

std::string windText(TropicalStorm const& storm, HazardWords const& words) {
  return storm.isPeakWind
             ? words.texts.format("storms.peakWind", words.speed(storm.windMs))
             : words.texts.format("storms.wind", words.speed(storm.windMs), storm.averagingMinutes);
}

std::string movementText(TropicalStorm const& storm, HazardWords const& words) {
  if (!storm.movementDirection || storm.movementMs.value_or(0) <= 0) return {};
  return words.texts.format("storms.moving",
                            compassPoint(compassPoint(*storm.movementDirection), words.texts),
                            words.speed(*storm.movementMs));
}

std::string approachText(TropicalStorm const& storm, Coordinate place, HazardWords const& words) {
  auto const nearest = closestApproach(storm, place, words.now);
  if (nearest && nearest->km > kFarthestKm) return {};
  if (!nearest) return std::string(words.texts.text("storms.noTrack"));
  bool const comesNearer = nearest->km + kNearerKm < haversineKm(storm.coordinate, place);
  if (!comesNearer) return std::string(words.texts.text("storms.notNearer"));
  // Forecast positions lie half a day apart: minutes between them would only look exact.
  Instant const hour = std::chrono::round<std::chrono::hours>(nearest->time);
  return words.texts.format("storms.closest", words.distance(nearest->km), words.moment(hour));
}

std::string sourceText(TropicalStorm const& storm, HazardWords const& words) {
  std::string centres(properNameOf(storm.centre));
  for (StormCentre const also : storm.alsoBy) appendItem(centres, properNameOf(also), words.texts);
  return storm.lastUpdate ? words.texts.format("storms.reported", centres, words.moment(*storm.lastUpdate))
                          : centres;
}

}  // namespace

std::string stormStateText(HazardCheck const& check, std::size_t count, HazardWords const& words) {
  std::string const when = words.moment(check.checkedAt.value_or(words.now));
  if (check.state == HazardState::none) return words.texts.format("storms.none", when);
  if (check.state == HazardState::listed) return words.texts.format("storms.count", count, when);
  return uncheckedText("storms", check, words);
}

HazardLine stormLine(TropicalStorm const& storm, Coordinate place, HazardWords const& words) {
  std::string const category(
      words.texts.text("push.hurricane.category." + std::string(enumName(storm.category))));
  std::string const name = storm.name.empty() ? storm.id : storm.name;
  HazardLine line{words.texts.format("storms.title", name, category), {}};
  add(line.detail, words.away(place, storm.coordinate));
  add(line.detail, approachText(storm, place, words));
  add(line.detail, windText(storm, words));
  add(line.detail, movementText(storm, words));
  if (storm.galeRadiusKm)
    add(line.detail, words.texts.format("storms.gales", words.distance(*storm.galeRadiusKm)));
  add(line.detail, sourceText(storm, words));
  return line;
}

std::vector<std::string> stormMissLines(std::vector<StormMiss> const& misses, HazardWords const& words) {
  std::vector<std::string> lines;
  lines.reserve(misses.size());
  for (StormMiss const& miss : misses) {
    lines.push_back(words.texts.format("storms.notChecked", properNameOf(miss.centre),
                                       failureText(miss.failure, words.texts)));
  }
  return lines;
}

}  // namespace nimbara
