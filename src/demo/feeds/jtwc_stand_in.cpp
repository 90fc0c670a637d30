#include "demo/feeds/jtwc_stand_in.h"

#include "base/json/json.h"
#include "base/text/number.h"
#include "base/text/text.h"
#include "demo/conditional_answer.h"
#include "demo/world/demo_storms.h"

#include <algorithm>
#include <cmath>

namespace nimbara {

namespace {

using std::chrono::hours;

constexpr double kKmhInAKnot = 1.852;
constexpr double kKnotsInAMph = 0.868976;

std::string padded(int value, std::size_t width) {
  std::string text = std::to_string(value);
  return std::string(text.size() < width ? width - text.size() : 0, '0') + text;
}

/// "wp0126" of "wp012026".
std::string fileOf(DemoStorm const& storm) {
  std::string const id = demoStormId(storm);
  return id.substr(0, 4) + id.substr(6);
}

std::string tenths(double degrees, char positive, char negative, std::size_t width) {
  return padded(static_cast<int>(std::lround(std::abs(degrees) * 10)), width) +
         (degrees < 0 ? negative : positive);
}

std::string positionOf(Coordinate place, std::string_view between) {
  return tenths(place.latitude, 'N', 'S', 3) + std::string(between) + tenths(place.longitude, 'E', 'W', 4);
}

/// "2026112106".
std::string stampOf(Instant instant) {
  std::string const text = formatIso8601(instant);
  return text.substr(0, 4) + text.substr(5, 2) + text.substr(8, 2) + text.substr(11, 2);
}

std::string radiiOf(double knots) {
  if (knots < 34) return {};
  int const miles = static_cast<int>(20 + knots);
  return " R034 " + padded(miles, 3) + " NE QD " + padded(miles * 3 / 4, 3) + " SE QD " +
         padded(miles / 2, 3) + " SW QD " + padded(miles * 3 / 4, 3) + " NW QD";
}

std::string headerOf(DemoStorm const& storm, Instant run) {
  DemoStormMoment const moment = demoStormMoment(storm, run);
  std::string const number = demoStormId(storm).substr(2, 2) + asciiUppered(storm.lane->basin.substr(0, 1));
  int const warning = static_cast<int>((run - storm.begin) / hours(6));
  return stampOf(run) + " " + number + " " + asciiUppered(demoStormName(storm)) + "    " +
         padded(warning + 1, 3) + "  01 " + padded(static_cast<int>(moment.direction), 3) + " " +
         padded(static_cast<int>(std::lround(moment.speedMph * kKnotsInAMph)), 2) + " SATL 060\n";
}

std::string warningOf(DemoStorm const& storm, Instant run) {
  std::string text = "WTPN51 PGTW " + stampOf(run).substr(6) + "00    \nWARNING    ATCG MIL\n";
  text += headerOf(storm, run);
  for (int const ahead : {0, 12, 24, 36, 48, 72, 96, 120}) {
    if (run + hours(ahead) >= storm.end()) break;
    DemoStormMoment const moment = demoStormMoment(storm, run + hours(ahead));
    text += "T" + padded(ahead, 3) + " " + positionOf(moment.place, " ") + " " +
            padded(static_cast<int>(moment.knots), 3) + radiiOf(moment.knots) + " \n";
  }
  text +=
      "AMP\n    MADE UP FOR TRIALS\nSUBJ:  TROPICAL CYCLONE " + asciiUppered(demoStormName(storm)) + "\n//\n";
  for (Instant past = std::max(storm.begin, run - hours(72)); past <= run; past += hours(6)) {
    DemoStormMoment const moment = demoStormMoment(storm, past);
    text += demoStormId(storm).substr(2, 2) + stampOf(past).substr(2) + " " + positionOf(moment.place, "") +
            "  " + padded(static_cast<int>(moment.knots), 2) + "\n";
  }
  return text + "NNNN\n";
}

std::vector<DemoStorm> stormsAt(Instant now) {
  auto storms = demoStormsAt(now);
  std::erase_if(storms, [](DemoStorm const& storm) { return !storm.lane->bin.empty(); });
  return storms;
}

void writeFeature(JsonWriter& json, DemoStorm const& storm, std::int64_t event, Instant run) {
  DemoStormMoment const moment = demoStormMoment(storm, run);
  double peak = 0;
  for (Instant past = storm.begin; past <= run; past += hours(6))
    peak = std::max(peak, demoStormMoment(storm, past).knots);
  json.separate();
  json.beginObject();
  json.member("type", "Feature");
  json.key("geometry");
  json.beginObject();
  json.member("type", "Point");
  json.member("coordinates", std::vector<double>{moment.place.longitude, moment.place.latitude});
  json.endObject();
  json.key("properties");
  json.beginObject();
  json.member("eventtype", "TC");
  json.member("eventid", event);
  json.member("eventname", asciiUppered(demoStormName(storm)) + "-" + demoStormId(storm).substr(6));
  json.member("iscurrent", "true");
  json.member("todate", formatIso8601(run).substr(0, 19));
  json.member("source", "JTWC");
  json.key("severitydata");
  json.beginObject();
  json.member("severity", peak * kKmhInAKnot);
  json.member("severityunit", "km/h");
  json.endObject();
  json.endObject();
  json.endObject();
}

}  // namespace

DemoAnswer jtwcList(DemoRequest const& request, Instant now) {
  std::string text =
      "<?xml version=\"1.0\"?>\n<rss version=\"2.0\"><channel>\n<item><description><![CDATA[<p><b>";
  auto const storms = stormsAt(now);
  for (DemoStorm const& storm : storms) {
    std::string const file = fileOf(storm);
    text += "Tropical Cyclone (" + std::string(demoStormName(storm)) + ")</b><br>\n<b>Issued<b>\n<ul>\n";
    for (std::string_view const ending : {"web.txt", ".gif", ".tcw"})
      text +=
          "<li><a href='https://www.metoc.navy.mil/jtwc/products/" + file + std::string(ending) + "'>x</a>\n";
  }
  if (storms.empty()) text += "<font color='red'>No Current Tropical Cyclone Warnings.</font>";
  return conditionalAnswer(request, text + "]]></description></item></channel></rss>\n", 60);
}

DemoAnswer jtwcWarning(DemoRequest const& request, Instant now) {
  for (DemoStorm const& storm : stormsAt(now)) {
    if (request.path.ends_with("/" + fileOf(storm) + ".tcw"))
      return conditionalAnswer(request, warningOf(storm, demoStormRun(now)), 60);
  }
  return {404, "", {}};
}

DemoAnswer gdacsEvents(DemoRequest const&, Instant now) {
  JsonWriter json;
  json.beginObject();
  json.member("type", "FeatureCollection");
  json.key("features");
  json.beginList();
  std::int64_t event = 1'001'000 + std::chrono::floor<std::chrono::days>(now).time_since_epoch().count() / 8;
  for (DemoStorm const& storm : demoStormsAt(now)) writeFeature(json, storm, event++, demoStormRun(now));
  json.endList();
  json.endObject();
  return {200, json.take(), {}};
}

}  // namespace nimbara
