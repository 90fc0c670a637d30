#include "base/text/number.h"
#include "base/text/text.h"
#include "cli/options/command_definitions.h"
#include "feeds/travel/advisory_source.h"

#include <cmath>

namespace nimbara {

namespace {

constexpr char kPlace[] = "LAT,LON in decimal degrees, a saved place's name, or a name to search for";
constexpr char kJson[] = "One JSON document instead of text";

/// Ranges let through what is no number.
std::string number(std::string const& text) {
  auto const value = parseDouble(text);
  return value && std::isfinite(*value) ? "" : "'" + oneLine(text) + "' is not a number";
}

void defineNws(Command app, CommandLine& line, RawOptions& raw) {
  Command const command =
      app.command("nws", "Active alerts for a place from the U.S. National Weather Service");
  FeedOptions& options = line.feeds;
  command.option("PLACE", options.place, "LAT,LON in decimal degrees, or a name to search for");
  command.option("--view", options.view, "all, convective or flood")
      .among(std::to_array<std::string_view>({"all", "convective", "flood"}));
  command.option("--country", options.country, "The country the place is in")
      .called("CC")
      .check(countryCodeProblem);
  command.flag("--json", options.json, kJson);
  defineCommon(command, line, raw);
  command.whenGiven([&line] { line.run = runNws; });
}

void defineQuakes(Command app, CommandLine& line, RawOptions& raw) {
  Command const command = app.command("quakes", "The earthquakes of the last 24 hours, newest first");
  FeedOptions& options = line.feeds;
  Option const near =
      command.option("--near", options.place, "Only earthquakes near this place").called("PLACE");
  command.option("--radius", options.radiusKm, "Distance from the place")
      .called("KM")
      .check(number)
      .range(0.0, 20100.0)
      .needs(near);
  command.option("--min-magnitude", options.minMagnitude, "Minimum magnitude")
      .called("M")
      .check(number)
      .range(-10.0, 12.0);
  static constexpr std::string_view kOrders[] = {"time", "significance"};
  command.option("--sort", options.order, "By time, the newest first, or as the window sorts them")
      .showsDefault()
      .among(kOrders);
  command.flag("--json", options.json, kJson);
  defineCommon(command, line, raw);
  command.whenGiven([&line, near] {
    line.run = runQuakes;
    line.feeds.isNear = near.isGiven();
  });
}

void defineKp(Command app, CommandLine& line, RawOptions& raw) {
  Command const command =
      app.command("kp", "Geomagnetic activity: the planetary K index, and where auroras may be seen");
  command.option("--place", line.feeds.place, "Where to look for auroras; the selected place by default")
      .called("PLACE");
  command.flag("--json", line.feeds.json, kJson);
  defineCommon(command, line, raw);
  command.whenGiven([&line] { line.run = runKp; });
}

/// A command about a place.
Command definePlaceCommand(Command app, CommandLine& line, RawOptions& raw, char const* name,
                           char const* explanation, int (*run)(CommandLine const&, Session const&)) {
  Command const command = app.command(name, explanation);
  command.option("PLACE", line.feeds.place, kPlace);
  command.flag("--json", line.feeds.json, kJson);
  defineCommon(command, line, raw);
  command.whenGiven([&line, run] { line.run = run; });
  return command;
}

void defineRadius(Command command, CommandLine& line, char const* explanation) {
  command.option("--radius", line.feeds.radius, explanation).called("KM").check(number).range(1.0, 500.0);
}

void defineHazards(Command app, CommandLine& line, RawOptions& raw) {
  definePlaceCommand(app, line, raw, "air", "Air quality, pollen and UV, now and for the next 48 hours",
                     runAir);
  definePlaceCommand(app, line, raw, "climate",
                     "How today's temperature compares with what is usual, 1991 to 2020", runClimate);
  definePlaceCommand(app, line, raw, "storms",
                     "Tropical storms of the world, the nearest first, with their forecast tracks",
                     runStorms);
  Command const fires = definePlaceCommand(
      app, line, raw, "fires", "Wildfires seen by satellites in the last 24 hours; needs your key", runFires);
  defineRadius(fires, line, "Distance from the place (default: 100)");
  Command const lightning = definePlaceCommand(
      app, line, raw, "lightning", "Lightning strikes in the last hour; needs your own source", runLightning);
  defineRadius(lightning, line, "Distance from the place (default: 50)");
  Command const advisories = definePlaceCommand(app, line, raw, "advisories",
                                                "Travel advisory for the place's country", runAdvisories);
  advisories.flag("--all", line.feeds.isWorld, "Those of all countries, highest level first");
  advisories
      .option("--source", line.feeds.source,
              "Whose: the United States, Canada, the United Kingdom or Germany (default: from the settings)")
      .among(enumNames<AdvisorySource>);
}

void defineFeedServer(Command app, CommandLine& line, RawOptions& raw) {
  Command const command = app.command(
      "feed-server", "Serve earthquakes and satellite orbits from the public sources to many programs");
  command.option("--listen", line.feeds.listen, "Address to listen on; port 0 picks a free one")
      .showsDefault()
      .called("ADDR:PORT");
  defineCommon(command, line, raw);
  command.whenGiven([&line] { line.run = runFeedServer; });
}

}  // namespace

std::string countryCodeProblem(std::string const& text) {
  bool const isCode = text.size() == 2 &&
                      asciiUppered(text).find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ") == std::string::npos;
  return isCode ? "" : "'" + oneLine(text) + "' is not a country code; use one like US";
}

void defineFeeds(Command app, CommandLine& line, RawOptions& raw) {
  defineNws(app, line, raw);
  defineQuakes(app, line, raw);
  defineHazards(app, line, raw);
  defineKp(app, line, raw);
  defineFeedServer(app, line, raw);
}

}  // namespace nimbara
