#include "app/services/feed_services.h"
#include "base/bearing.h"
#include "base/text/text.h"
#include "cli/commands/feed_commands.h"
#include "cli/commands/hazards/hazard_frame.h"
#include "feeds/fires/wildfire_service.h"
#include "feeds/storms/lightning_source.h"
#include "feeds/travel/travel_advisory_service.h"
#include "gazetteer/gazetteer.h"
#include "providers/common/compass.h"

#include <algorithm>

namespace nimbara {

namespace {

constexpr std::chrono::hours kStrikesOf{1};
constexpr std::size_t kMostShown = 30;

/// Where something is, and how far from the place.
void writePosition(JsonWriter& json, Coordinate place, Coordinate there) {
  json.member("latitude", there.latitude);
  json.member("longitude", there.longitude);
  json.member("distanceKm", haversineKm(place, there));
  json.member("direction", compassPoint(bearingDegrees(place, there)));
}

void writeFire(JsonWriter& json, FireDetection const& fire, Coordinate place) {
  json.separate();
  json.beginObject();
  json.member("id", fire.id);
  writePosition(json, place, fire.coordinate);
  json.member("detectedAt", fire.detectedAt);
  json.member("powerMW", fire.frp);
  json.member("confidence", fire.confidence);
  json.member("hotSpots", fire.hotSpots);
  json.member("reachKm", fire.reachKm);
  json.endObject();
}

void writeStrike(JsonWriter& json, LightningStrike const& strike, Coordinate place) {
  json.separate();
  json.beginObject();
  json.member("time", strike.time);
  writePosition(json, place, strike.coordinate);
  json.endObject();
}

void writeAdvisory(JsonWriter& json, TravelAdvisory const& advisory) {
  json.separate();
  json.beginObject();
  json.member("country", advisory.country);
  json.member("level", advisory.level);
  json.member("severity", advisorySeverity(advisory.level));
  json.member("title", advisory.title);
  json.member("summary", advisory.summary);
  json.memberOrNull("link", advisory.link.empty() ? std::nullopt : std::optional(advisory.link));
  json.memberOrNull("published", advisory.published);
  json.memberOrNull("updated", advisory.updated);
  json.member("source", advisory.source);
  json.memberOrNull("advice", advisory.advice.empty() ? std::nullopt : std::optional(advisory.advice));
  json.member("hasRegions", advisory.hasRegions);
  json.endObject();
}

/// The radius that was asked for, else the one that suits.
double radiusOf(CommandLine const& line, double usual) {
  return line.feeds.radius.value_or(usual);
}

template <class T, class LineOf>
std::vector<HazardLine> linesOf(std::vector<T> const& items, LineOf const& lineOf) {
  std::vector<HazardLine> lines;
  for (std::size_t i = 0; i < std::min(items.size(), kMostShown); ++i) lines.push_back(lineOf(items[i]));
  return lines;
}

HazardAnswer advisoriesFor(std::vector<TravelAdvisory> chosen, HazardCheck check, std::string const& country,
                           AdvisorySource source, HazardWords const& words) {
  HazardAnswer answer;
  bool const isChecked = check.state == HazardState::listed || check.state == HazardState::none;
  if (chosen.empty() && isChecked) check.state = HazardState::uncovered;
  answer.subject = "the travel advisories";
  answer.heading = advisoryStateText(check, chosen.size(), country, words);
  std::vector<std::string> notes;
  for (TravelAdvisory const& advisory : chosen) {
    answer.lines.push_back(advisoryLine(advisory, words));
    if (!country.empty() && !advisory.summary.empty()) {
      for (std::string_view const part : split(advisory.summary, '\n'))
        if (!trimmed(part).empty()) answer.lines.push_back({"", std::string(trimmed(part))});
    }
    if (!country.empty() && !advisory.link.empty()) notes.push_back(advisory.link);
  }
  notes.push_back(advisorySourceText(source, words.texts));
  answer.notes = std::move(notes);
  answer.check = std::move(check);
  answer.writeItems = [chosen = std::move(chosen)](JsonWriter& json) {
    for (TravelAdvisory const& advisory : chosen) writeAdvisory(json, advisory);
  };
  return answer;
}

/// The United Kingdom has no list of all countries.
HazardAnswer pageByPage(HazardWords const& words) {
  HazardAnswer answer;
  answer.check.state = HazardState::uncovered;
  answer.subject = "the travel advisories";
  answer.heading = words.texts.text("advisories.pages");
  answer.notes = {advisorySourceText(AdvisorySource::uk, words.texts)};
  answer.writeItems = [](JsonWriter&) {};
  return answer;
}

}  // namespace

int runFires(CommandLine const& line, Session const& session) {
  constexpr double kUsualKm = 100;
  double const radius = radiusOf(line, kUsualKm);
  return runHazard(line, session, [&](RunContext& context, Place const& place, HazardWords const& words) {
    auto const reading = context.app().feeds().wildfires().fetchFires(place.coordinate, radius, session.stop);
    HazardAnswer answer;
    answer.check = hazardCheck(reading, !reading.data.empty());
    answer.subject = "the wildfires";
    answer.advice =
        "wildfires need your own free key from NASA FIRMS; set it with: nimbara settings set firmsApiKey KEY";
    answer.heading = fireStateText(answer.check, reading.data.size(), radius, words);
    answer.lines = linesOf(
        reading.data, [&](FireDetection const& fire) { return fireLine(fire, place.coordinate, words); });
    if (!reading.data.empty()) answer.notes = {std::string(words.texts.text("fires.note"))};
    answer.writeItems = [fires = reading.data, at = place.coordinate](JsonWriter& json) {
      for (FireDetection const& fire : fires) writeFire(json, fire, at);
    };
    return answer;
  });
}

int runLightning(CommandLine const& line, Session const& session) {
  constexpr double kUsualKm = 50;
  double const radius = radiusOf(line, kUsualKm);
  return runHazard(line, session, [&](RunContext& context, Place const& place, HazardWords const& words) {
    auto reading = context.app().feeds().lightning().fetchStrikes(place.coordinate, radius,
                                                                  words.now - kStrikesOf, session.stop);
    std::ranges::stable_sort(reading.data, {}, [&](LightningStrike const& strike) {
      return haversineKm(place.coordinate, strike.coordinate);
    });
    HazardAnswer answer;
    answer.check = hazardCheck(reading, !reading.data.empty());
    answer.subject = "the lightning strikes";
    answer.advice =
        "there is no public source of lightning strikes; name your own with: nimbara settings set "
        "lightningHost ADDRESS";
    answer.heading = lightningStateText(answer.check, reading.data.size(), radius, words);
    answer.lines = linesOf(reading.data, [&](LightningStrike const& strike) {
      return strikeLine(strike, place.coordinate, words);
    });
    answer.writeItems = [strikes = reading.data, at = place.coordinate](JsonWriter& json) {
      for (LightningStrike const& strike : strikes) writeStrike(json, strike, at);
    };
    return answer;
  });
}

int runAdvisories(CommandLine const& line, Session const& session) {
  return runHazard(line, session, [&](RunContext& context, Place const& place, HazardWords const& words) {
    auto& service = context.app().feeds().travelAdvisories();
    auto const source = enumFromName<AdvisorySource>(line.feeds.source).value_or(service.chosen());
    std::string country;
    if (!line.feeds.isWorld) country = describePlace(place.coordinate).countryCode;
    if (line.feeds.isWorld && source == AdvisorySource::uk) return pageByPage(words);
    auto reading = service.fetchAdvisories(source, country, session.stop);
    HazardCheck const check = hazardCheck(reading, !reading.data.empty());
    if (!line.feeds.isWorld) {
      std::erase_if(reading.data, [&](TravelAdvisory const& entry) { return entry.country != country; });
    }
    std::ranges::stable_sort(reading.data, std::ranges::greater{}, &TravelAdvisory::level);
    return advisoriesFor(std::move(reading.data), check, country, source, words);
  });
}

}  // namespace nimbara
