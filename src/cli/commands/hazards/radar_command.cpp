#include "app/services/feed_services.h"
#include "app/services/forecasts/side_by_side.h"
#include "base/files/file.h"
#include "base/json/json.h"
#include "base/words/time_words.h"
#include "cli/cli.h"
#include "cli/run_context.h"
#include "cli/terminal.h"
#include "demo/demo_folder.h"
#include "feeds/imagery/radar/radar_drawing.h"
#include "feeds/imagery/radar/radar_service.h"
#include "feeds/imagery/tile_service.h"
#include "platform/linux/child_process.h"

#include <algorithm>
#include <cmath>
#include <unistd.h>

namespace nimbara {

namespace {

using State = RadarReading::State;

constexpr std::chrono::seconds kDrawingLimit{20};

std::string_view wordOf(State state) {
  constexpr std::string_view kWords[] = {"ok", "noRadarHere", "unavailable"};
  return kWords[static_cast<std::size_t>(state)];
}

/// What a run has found out.
struct Outcome {
  RadarReading reading;
  std::optional<RadarFrame> frame;
  std::optional<Failure> failure;  ///< of this program, not of a supplier
};

std::string jsonOf(Outcome const& outcome, Instant now) {
  RadarReading const& reading = outcome.reading;
  JsonWriter json;
  json.beginObject();
  json.memberOrNull("source", outcome.frame ? std::optional(enumName(reading.source)) : std::nullopt);
  json.memberOrNull("frame", outcome.frame ? std::optional(outcome.frame->time) : std::nullopt);
  json.memberOrNull(
      "ageSeconds",
      outcome.frame
          ? std::optional(std::chrono::floor<std::chrono::seconds>(now - outcome.frame->time).count())
          : std::nullopt);
  json.member("state", wordOf(reading.state));
  json.key("unchecked");
  json.beginList();
  for (RadarMiss const& miss : reading.misses) {
    json.separate();
    json.beginObject();
    json.member("source", enumName(miss.source));
    json.member("reason", sentenceOf(miss.failure));
    json.endObject();
  }
  json.endList();
  json.endObject();
  return json.take() + "\n";
}

/// Fetches what a picture wants and has it drawn by the program that has the toolkit.
class RadarRun {
 public:
  RadarRun(RunContext& context, CommandLine const& line, Session const& session, Place place)
      : context_(context),
        options_(line.radar),
        session_(session),
        place_(std::move(place)),
        drawer_(session.environment.program.parent_path() / "nimbara-desktop"),
        view_{mercatorOf(place_.coordinate), static_cast<double>(options_.zoom), options_.width,
              options_.height} {}

  Outcome run() {
    if (access(drawer_.c_str(), X_OK) != 0) {
      return failed(
          "the picture is drawn by nimbara-desktop, which is not installed beside nimbara; install the "
          "package of the window");
    }
    if (folder_.path().empty()) return failed("no space for temporary files; check TMPDIR");
    // Each turn ends with a picture, or with one supplier less.
    for (std::size_t turn = 0; turn <= radarSuppliers().size() && !session_.stop.stop_requested(); ++turn) {
      RadarReading reading = radar().frames(place_.coordinate, session_.stop);
      if (reading.state == State::failed) return {std::move(reading), {}, {}};
      if (reading.state == State::none) return ended(std::move(reading), {}, drawn(drawingWithoutRadar()));
      RadarFrame const frame = reading.frames[newestMeasured(reading.frames)];
      auto const drawing = fetched(reading, frame);
      if (!drawing) {
        radar().refuse(reading.source, drawing.error());
        continue;
      }
      int const code = drawn(*drawing);
      if (code == drawingCode::kUncovered) {
        radar().noteUncovered(reading.source, place_.coordinate);
      } else if (code == drawingCode::kUnusable) {
        radar().refuse(reading.source, ServiceFailure::of(ServiceFailure::Kind::unreadable,
                                                          "its pictures do not show the radar"));
      } else {
        return ended(std::move(reading), frame, code);
      }
    }
    return {radar().frames(place_.coordinate, session_.stop), {}, {}};
  }

 private:
  RadarService& radar() { return context_.app().feeds().radar(); }
  Instant now() const { return context_.clock().now(); }

  static Outcome failed(std::string sentence) {
    return {{}, {}, Failure{exitCode::kUnavailable, std::move(sentence), {}}};
  }

  Outcome ended(RadarReading reading, std::optional<RadarFrame> frame, int code) const {
    if (code == drawingCode::kDrawn) return {std::move(reading), std::move(frame), {}};
    return failed("the picture could not be written to " + options_.png);
  }

  RadarDrawing drawingWithoutRadar() const {
    RadarDrawing drawing;
    drawing.picture = std::filesystem::absolute(options_.png).string();
    drawing.latitude = place_.coordinate.latitude;
    drawing.longitude = place_.coordinate.longitude;
    drawing.zoom = view_.zoom;
    drawing.width = view_.width;
    drawing.height = view_.height;
    drawing.place = place_.name.empty() ? formatCoordinate(place_.coordinate) : place_.name;
    drawing.time = context_.texts().text("radar.none");
    return drawing;
  }

  /// With all tiles in files; the first failure of one of them otherwise. A tile that the supplier does not
  /// have stays empty, but not all of them.
  Result<RadarDrawing, ServiceFailure> fetched(RadarReading const& reading, RadarFrame const& frame) {
    RadarSupplier const& supplier = supplierOf(reading.source);
    auto const wanted = tilesWanted(supplier, view_);
    std::vector<Result<std::string, ServiceFailure>> got(wanted.size());
    std::vector<std::function<void()>> tasks;
    tasks.reserve(wanted.size() + 1);
    for (std::size_t i = 0; i < wanted.size(); ++i) {
      tasks.emplace_back([&, i] {
        got[i] = context_.app().feeds().tiles().picture(reading, frame, wanted[i], session_.stop);
      });
    }
    RadarDrawing drawing = drawingWithoutRadar();
    tasks.emplace_back([&] { drawing.coverage = fetchedCoverage(reading); });
    runAll(tasks, Waiting::sideBySide);
    constexpr int kNotFound = 404;
    std::optional<ServiceFailure> missing;
    for (std::size_t i = 0; i < wanted.size(); ++i) {
      if (got[i]) {
        drawing.tiles.push_back(kept(wanted[i], *got[i]));
      } else if (got[i].error().status == kNotFound) {
        missing = got[i].error();
      } else {
        return std::unexpected(got[i].error());
      }
    }
    if (drawing.tiles.empty()) return std::unexpected(missing.value_or(ServiceFailure()));
    drawing.source = reading.source;
    drawing.credit = supplier.credit;
    drawing.time = context_.moment(frame.time) + " · " + ageText(frame.time, now(), context_.texts());
    return drawing;
  }

  std::optional<DrawnTile> fetchedCoverage(RadarReading const& reading) {
    if (reading.coverage.empty()) return std::nullopt;
    TileAddress const tile = coverageTileAt(place_.coordinate);
    auto const bytes = context_.app().feeds().tiles().coverage(reading, tile, session_.stop);
    return bytes ? std::optional(kept(tile, *bytes)) : std::nullopt;
  }

  DrawnTile kept(TileAddress tile, std::string const& bytes) {
    auto const file = folder_.path() / (std::to_string(++files_) + ".tile");
    std::ignore = writeFileAtomically(file, bytes);
    return {tile.zoom, tile.x, tile.y, file.string()};
  }

  int drawn(RadarDrawing const& drawing) {
    auto const file = folder_.path() / "drawing.json";
    if (!writeFileAtomically(file, encodeJson(drawing))) return drawingCode::kFailed;
    auto const code =
        timedRunner(kDrawingLimit, session_.stop)({drawer_.string(), kDrawRadar, file.string()});
    return code.value_or(drawingCode::kFailed);
  }

  RunContext& context_;
  RadarOptions const& options_;
  Session const& session_;
  Place place_;
  std::filesystem::path drawer_;
  MapView view_;
  DemoFolder folder_;
  std::atomic<int> files_ = 0;
};

std::string missLine(RunContext const& context, RadarMiss const& miss) {
  return "the radar of " + std::string(supplierOf(miss.source).name) +
         " could not be checked: " + context.plain(miss.failure);
}

}  // namespace

int runRadar(CommandLine const& line, Session const& session) {
  auto const clock = makeClock(line.common);
  RunContext context(line.common, session, *clock,
                     ownServicesWithin(kCommandLimit, line.common, WeatherProviderOption::automatic));
  auto place = context.place(line.radar.place);
  if (!place) return session.fail(place.error().exitCode, place.error().sentence);
  Outcome const outcome = RadarRun(context, line, session, std::move(*place)).run();
  if (session.stop.stop_requested()) return session.fail(exitCode::kInterrupted, "interrupted");
  if (outcome.failure) return session.fail(outcome.failure->exitCode, outcome.failure->sentence);
  if (line.radar.json) session.console.out(jsonOf(outcome, clock->now()));
  for (RadarMiss const& miss : outcome.reading.misses) {
    if (&miss != &outcome.reading.misses.back() || outcome.reading.state != State::failed)
      context.tell(missLine(context, miss));
  }
  if (outcome.reading.state == State::failed)
    return session.fail(exitCode::kUnavailable, missLine(context, outcome.reading.misses.back()));
  if (line.radar.json) return exitCode::kComplete;
  Texts const& texts = context.texts();
  std::string const text = outcome.frame
                               ? texts.format("nowcast.source.radar", supplierOf(outcome.reading.source).name,
                                              ageText(outcome.frame->time, clock->now(), texts))
                               : std::string(texts.text("radar.none"));
  session.console.out(styleOf(session).text(text) + "\n");
  return exitCode::kComplete;
}

}  // namespace nimbara
