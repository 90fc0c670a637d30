#include "app/services/feed_services.h"
#include "app/words/hazards/quake_place.h"
#include "base/json/json.h"
#include "base/text/display_text.h"
#include "base/text/number.h"
#include "base/text/text.h"
#include "base/words/grouped_text.h"
#include "base/words/time_words.h"
#include "cli/cli.h"
#include "cli/commands/feed_commands.h"
#include "cli/run_context.h"
#include "cli/terminal.h"
#include "feeds/quakes/earthquake_service.h"
#include "feeds/quakes/emsc_service.h"
#include "feeds/quakes/felt_intensity.h"

#include <algorithm>
#include <tuple>

namespace nimbara {

namespace {

/// Around what was asked for.
struct Circle {
  std::string name;
  Coordinate centre;
  double radiusKm = 0;
};

/// Only what was asked for.
std::vector<EarthquakeEvent> chosen(std::vector<EarthquakeEvent> events, FeedOptions const& options,
                                    std::optional<Circle> const& circle) {
  std::erase_if(events, [&](EarthquakeEvent const& event) {
    bool const isFar = circle && !(haversineKm(circle->centre, event.coordinate()) <= circle->radiusKm);
    return isFar || (options.minMagnitude && event.magnitude < *options.minMagnitude);
  });
  return events;
}

constexpr std::string_view kBySignificance = "significance";

/// As the window does: those that may be felt at the place first, then by magnitude, then by time.
void sortBySignificance(std::vector<EarthquakeEvent>& events, std::optional<Circle> const& circle) {
  std::ranges::stable_sort(events, std::ranges::greater{}, [&](EarthquakeEvent const& event) {
    bool const isFelt =
        circle && feltIntensity(event.magnitude, haversineKm(circle->centre, event.coordinate()),
                                event.depthKm) >= kFeltIntensity;
    return std::tuple(isFelt, event.magnitude, event.time);
  });
}

/// A page of earthquakes: a heading, titles of columns, a row for each.
class QuakePage {
 public:
  QuakePage(std::vector<EarthquakeEvent> const& events, std::optional<Circle> const& circle,
            RunContext const& context, Session const& session)
      : events_(events),
        circle_(circle),
        texts_(context.texts()),
        unit_(context.wording().units.distance),
        now_(context.clock().now()),
        words_(texts_, session.environment.machineCalendar),
        style_(styleOf(session)),
        width_(session.console.terminalWidth()) {}

  std::string text() const {
    if (events_.empty()) return style_.text(emptySentence()) + "\n";
    auto const rows = this->rows();
    std::vector<int> widths(rows.front().size());
    for (Row const& row : rows) {
      for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], displayWidth(row[i]));
    }
    std::string out = style_.painted(style_.text(heading()), Colour::bold) + "\n";
    for (std::size_t i = 0; i < rows.size(); ++i) {
      std::string const line = lineOf(rows[i], widths);
      out += (i == 0 ? style_.painted(line, Colour::dim) : line) + "\n";
    }
    out += style_.painted(style_.text(sources()), Colour::dim) + "\n";
    return out;
  }

 private:
  using Row = std::vector<std::string>;

  std::string distance(double km) const {
    return groupedText(display(km, unit_), texts_) + " " + std::string(symbol(unit_));
  }

  std::string heading() const {
    if (!circle_) return texts_.format("desktop.quakes.count", events_.size());
    return texts_.format("quakes.near", events_.size(), distance(circle_->radiusKm), circle_->name);
  }

  std::string emptySentence() const {
    if (!circle_) return std::string(texts_.text("desktop.quakes.none"));
    return texts_.format("quakes.noneNear", distance(circle_->radiusKm), circle_->name);
  }

  std::string title(std::string_view column) const {
    return std::string(texts_.text("quakes.column." + std::string(column)));
  }

  std::string magnitude(double value) const {
    std::string text = fixedDecimal(value, 1);
    return text.replace(text.find('.'), 1, texts_.decimalPoint());
  }

  /// Both, where two sources measured it.
  std::string magnitudes(EarthquakeEvent const& event) const {
    std::string own = magnitude(event.magnitude);
    if (!event.emscMagnitude || event.isOnlyByEmsc) return own;
    return own + " / " + magnitude(*event.emscMagnitude);
  }

  /// Who measured: in the order of the two numbers where there are two.
  std::string sources() const {
    std::string second = "EMSC";
    if (std::ranges::all_of(events_, &EarthquakeEvent::isOnlyByEmsc)) return second;
    std::string const first(texts_.text("desktop.quakes.source"));
    bool const hasBoth = std::ranges::any_of(
        events_, [](EarthquakeEvent const& event) { return event.emscMagnitude.has_value(); });
    return hasBoth ? first + " / " + second : first;
  }

  std::vector<Row> rows() const {
    std::vector<Row> rows{{title("time"), title("magnitude"), title("depth")}};
    if (circle_) rows.front().push_back(title("distance"));
    rows.front().push_back(title("place"));
    for (EarthquakeEvent const& event : events_) {
      Row& row =
          rows.emplace_back(Row{words_.moment(event.time, now_), magnitudes(event), distance(event.depthKm)});
      if (circle_) row.push_back(distance(haversineKm(circle_->centre, event.coordinate())));
      row.push_back(quakePlace(event, unit_, texts_) + feltNote(event) + pagerNote(event.alert));
    }
    return rows;
  }

  /// Whether it may be felt at the place that was asked about.
  std::string feltNote(EarthquakeEvent const& event) const {
    if (!circle_) return {};
    double const km = haversineKm(circle_->centre, event.coordinate());
    bool const isFelt = feltIntensity(event.magnitude, km, event.depthKm) >= kFeltIntensity;
    return isFelt ? ", " + std::string(texts_.text("desktop.quakes.felt")) : std::string();
  }

  /// PAGER's colour where it expects damage; green says that nothing is the matter.
  std::string pagerNote(std::optional<std::string> const& colour) const {
    if (!colour || *colour == "green") return {};
    std::string const key = "warning.colour." + *colour;
    bool const isKnown = *colour == "yellow" || *colour == "orange" || *colour == "red";
    std::string const word = isKnown ? std::string(texts_.text(key)) : oneLine(*colour, 20);
    return ", " + texts_.format("quakes.pager", word);
  }

  /// Numbers stand to the right; the place ends where the terminal does.
  std::string lineOf(Row const& row, std::vector<int> const& widths) const {
    std::string line;
    int used = 0;
    for (std::size_t i = 0; i + 1 < row.size(); ++i) {
      line += style_.cell(row[i], widths[i], Align::right) + "  ";
      used += widths[i] + 2;
    }
    bool const isCut = width_ > 0 && used + displayWidth(row.back()) > width_;
    return line + (isCut ? style_.cell(row.back(), std::max(1, width_ - used)) : style_.text(row.back()));
  }

  std::vector<EarthquakeEvent> const& events_;
  std::optional<Circle> const& circle_;
  Texts const& texts_;
  DistanceUnit unit_;
  Instant now_;
  TimeWords words_;
  Style style_;
  int width_;  ///< 0: not a terminal
};

}  // namespace

int runQuakes(CommandLine const& line, Session const& session) {
  FeedOptions const& options = line.feeds;
  auto const clock = makeClock(line.common);
  RunContext context(line.common, session, *clock,
                     ownServices(line.common, WeatherProviderOption::automatic));
  std::optional<Circle> circle;
  if (options.isNear) {
    auto const place = context.place(options.place);
    if (!place) return session.fail(place.error().exitCode, place.error().sentence);
    std::string const name = place->name.empty() ? formatCoordinate(place->coordinate) : place->name;
    circle = {oneLine(name), place->coordinate, options.radiusKm};
  }
  auto reading = context.app().feeds().earthquakes().fetchEarthquakes(session.stop);
  auto const second = context.app().feeds().emsc().fetchEarthquakes(session.stop);
  if (session.stop.stop_requested()) return session.fail(exitCode::kInterrupted, "interrupted");
  bool const isMissing = reading.failure && reading.data.empty();
  bool const isOtherShown = !options.json && !second.data.empty();
  auto const failMissing = [&] {
    return session.fail(exitCode::kUnavailable,
                        (isOtherShown ? "the earthquakes of USGS could not be fetched: "
                                      : "the earthquakes could not be fetched: ") +
                            context.advised(reading.failure));
  };
  if (isMissing && !isOtherShown) return failMissing();
  if (reading.failure && !isMissing) {
    session.console.err("nimbara: could not fetch a newer earthquake list: " +
                        oneLine(context.plain(*reading.failure)) + "; showing the last known one\n");
  }
  if (second.failure) {
    context.tell("the earthquakes of EMSC could not be checked: " + context.plain(*second.failure));
  }
  reading.data = mergedEarthquakes(std::move(reading.data), second.data);
  auto events = chosen(reading.data, options, circle);
  if (options.order == kBySignificance) sortBySignificance(events, circle);
  session.console.out(options.json ? encodeJson(events) + "\n"
                                   : QuakePage(events, circle, context, session).text());
  // A reader is better off with the second source's than with none; that is not the whole list, though.
  return isMissing ? failMissing() : exitCode::kComplete;
}

}  // namespace nimbara
