#include "app/services/forecasts/forecast_service.h"
#include "base/text/text.h"
#include "base/words/time_words.h"
#include "cli/commands/satellites/satellite_source.h"
#include "cli/commands/satellites/satellites_commands.h"
#include "cli/pages/pass_table.h"
#include "cli/terminal.h"
#include "gazetteer/gazetteer.h"

namespace nimbara {

namespace {

constexpr std::string_view kDefaultSatellite = "ISS";

/// Seconds are enough for people and keep the document short.
SatellitePass rounded(SatellitePass pass) {
  for (PassMoment* const moment : {&pass.rise, &pass.culmination, &pass.set}) {
    moment->time = std::chrono::round<std::chrono::seconds>(moment->time);
  }
  if (pass.visible) {
    pass.visible->from = std::chrono::ceil<std::chrono::seconds>(pass.visible->from);
    pass.visible->to = std::chrono::floor<std::chrono::seconds>(pass.visible->to);
  }
  return pass;
}

std::string json(std::vector<ListedPass> const& passes) {
  JsonWriter writer;
  writer.beginList();
  for (auto const& [name, pass, cloudCover] : passes) {
    writer.separate();
    writer.beginObject();
    writer.member("name", name);
    writer.member("rise", pass.rise);
    writer.member("culmination", pass.culmination);
    writer.member("set", pass.set);
    writer.member("sunlit", pass.sunlit);
    writer.member("skyDark", pass.skyDark);
    writer.memberOrNull("visible", pass.visible);
    writer.memberOrNull("cloudCover", cloudCover);
    writer.endObject();
  }
  writer.endList();
  return writer.take() + "\n";
}

/// Per cent in the hour that holds the moment.
std::optional<int> cloudCoverAt(WeatherData const* data, Instant instant) {
  if (data == nullptr) return std::nullopt;
  for (auto const& hour : data->allHourly) {
    bool const holds = hour.date <= instant && instant < hour.date + std::chrono::hours(1);
    if (holds && hour.has(WeatherDetailField::cloudCover)) return hour.cloudCover;
  }
  return std::nullopt;
}

}  // namespace

Result<std::string, Failure> satellitePassesAnswer(SatelliteSource& source,
                                                   SatellitesOptions const& options) {
  RunContext& context = source.context();
  Session const& session = source.session();
  auto const place = context.place(options.place);
  if (!place) return std::unexpected(place.error());
  auto const found =
      source.find(options.satellite.empty() ? kDefaultSatellite : std::string_view(options.satellite));
  if (!found) return std::unexpected(found.error());
  auto const forecast = context.app().forecasts().get(*place, WeatherProviderOption::automatic, session.stop);
  if (!forecast) context.tell("without cloud cover: " + context.sentenceOf(forecast.error()));
  WeatherData const* const data = forecast ? &forecast->data : nullptr;
  Instant const now = source.now();
  std::vector<ListedPass> listed;
  for (auto const& pass : satellitePasses(found->entry.satrec, place->coordinate, now,
                                          now + std::chrono::days(options.days), options.above)) {
    if (options.visible && !pass.visible) continue;
    listed.push_back({found->entry.name, rounded(pass), cloudCoverAt(data, pass.culmination.time)});
  }
  if (options.json) return json(listed);
  Calendar const calendar = Calendar::forZone(std::string(timeZoneAt(place->coordinate)))
                                .value_or(session.environment.machineCalendar);
  TimeWords const words(context.texts(), calendar);
  Style const style = styleOf(session);
  std::string const where = place->name.empty() ? formatCoordinate(place->coordinate) : place->name;
  return passTable(listed, {found->entry.name, oneLine(where), options.days, options.visible, options.above,
                            context.texts(), words, calendar, style});
}

}  // namespace nimbara
