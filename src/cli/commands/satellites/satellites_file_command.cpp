#include "base/files/file.h"
#include "base/text/number.h"
#include "base/text/text.h"
#include "cli/commands/satellites/satellites_commands.h"
#include "globe/propagation/sgp4_batch.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <ctime>

namespace nimbara {

namespace {

constexpr std::size_t kLargestFile = std::size_t{64} << 20;
constexpr std::size_t kMostMoments = 1'000'000;

/// Why a run ends early.
struct Trouble {
  int code;
  std::string sentence;
};

template <class T>
using Outcome = Result<T, Trouble>;

std::optional<std::vector<double>> listed(std::string_view text) {
  std::vector<double> minutes;
  for (std::string_view const part : split(text, ',')) {
    auto const number = parseDouble(trimmed(part));
    if (!number) return std::nullopt;
    minutes.push_back(*number);
  }
  return minutes;
}

/// FROM, FROM + STEP … up to and with TO.
std::optional<std::vector<double>> ranged(std::vector<std::string_view> const& parts) {
  if (parts.size() != 3) return std::nullopt;
  auto const from = parseDouble(trimmed(parts[0]));
  auto const to = parseDouble(trimmed(parts[1]));
  auto const step = parseDouble(trimmed(parts[2]));
  if (!from || !to || !step || *step == 0) return std::nullopt;
  double const steps = std::floor((*to - *from) / *step + 1e-9);
  if (!(steps >= 0) || steps >= static_cast<double>(kMostMoments)) return std::nullopt;
  std::vector<double> minutes;
  minutes.reserve(static_cast<std::size_t>(steps) + 1);
  for (int i = 0; i <= static_cast<int>(steps); ++i) minutes.push_back(*from + *step * i);
  return minutes;
}

Outcome<std::vector<double>> readMinutes(std::string const& text) {
  auto const parts = split(text, ':');
  auto const minutes = parts.size() > 1 ? ranged(parts) : listed(text);
  auto const tooFar = [](double value) { return std::abs(value) > SGP4::kLongestSpanMinutes; };
  if (!minutes || std::ranges::any_of(*minutes, tooFar)) {
    return std::unexpected(Trouble{
        exitCode::kUsage, "'" + oneLine(text) + "' is not a list of minutes; use 0,360,720 or FROM:TO:STEP"});
  }
  return *minutes;
}

/// The records of a file. A wrong checksum is told of but stops nobody: the file is the user's own.
Outcome<std::vector<SGP4::SatRec>> readRecords(std::string const& file, Session const& session) {
  auto const text = readFile(file, kLargestFile);
  if (!text) return std::unexpected(Trouble{exitCode::kUnavailable, text.error()});
  auto const document = SGP4::readElements(*text, SGP4::Checksums::reported);
  for (auto const& [line, reason, dropped] : document.problems) {
    session.console.err("nimbara: line " + std::to_string(line) + " of " + oneLine(file) + ": " + reason +
                        (dropped ? "; skipping the record\n" : "\n"));
  }
  if (document.elements.empty()) {
    return std::unexpected(Trouble{exitCode::kUnavailable, oneLine(file) + " contains no element sets"});
  }
  std::vector<SGP4::SatRec> records;
  records.reserve(document.elements.size());
  for (SGP4::TLE const& tle : document.elements) records.push_back(SGP4::initialise(tle));
  return records;
}

/// More digits than the published reference output has, whatever the value.
std::string vectorText(std::array<double, 3> const& vector, int decimals, std::string_view separator) {
  return fixedDecimal(vector[0], decimals) + std::string(separator) + fixedDecimal(vector[1], decimals) +
         std::string(separator) + fixedDecimal(vector[2], decimals);
}

constexpr int kPositionDecimals = 9;
constexpr int kVelocityDecimals = 12;

/// Where the propagator gives no vectors, there are none.
bool hasVectors(SGP4::StateVector const& state) {
  return state.error == SGP4::errorCode::kNone || state.error == SGP4::errorCode::kDecayed;
}

std::string stateJson(int satnum, double minutes, SGP4::StateVector const& state) {
  auto const list = [&](auto const& vector, int decimals) {
    return hasVectors(state) ? "[" + vectorText(vector, decimals, ",") + "]" : std::string("null");
  };
  return R"({"satnum":)" + std::to_string(satnum) + R"(,"minutes":)" + plainDecimal(minutes) +
         R"(,"error":)" + std::to_string(state.error) + R"(,"position":)" +
         list(state.position, kPositionDecimals) + R"(,"velocity":)" +
         list(state.velocity, kVelocityDecimals) + "}";
}

std::string stateText(double minutes, SGP4::StateVector const& state) {
  std::string const moment = "  " + fixedDecimal(minutes, 3) + "  ";
  if (state.error != SGP4::errorCode::kNone) {
    return moment + "error " + std::to_string(state.error) + ": " +
           std::string(SGP4::errorText(state.error)) + "\n";
  }
  return moment + vectorText(state.position, 8, " ") + "  " + vectorText(state.velocity, 9, " ") + "\n";
}

std::string propagated(std::vector<SGP4::SatRec> const& records, std::vector<double> const& minutes,
                       bool json) {
  std::string out = json ? "[" : "";
  for (SGP4::SatRec const& record : records) {
    if (!json) out += std::to_string(record.tle.satnum) + " " + oneLine(record.tle.name) + "\n";
    SGP4::ResonanceState resonance = SGP4::resonanceStart(record);
    for (double const moment : minutes) {
      auto const state = SGP4::propagate(record, moment, resonance);
      if (json) out += (out.size() > 1 ? "," : "") + stateJson(record.tle.satnum, moment, state);
      if (!json) out += stateText(moment, state);
    }
  }
  return out + (json ? "]\n" : "");
}

double processorSeconds() {
  return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

/// Nanoseconds of processor time that one of `count` propagations takes: the median of many short runs, so
/// that what else the machine does falls out.
template <class Work>
double nanosecondsEach(std::size_t count, Work work) {
  constexpr int kRuns = 15;
  constexpr double kLongEnough = 0.015;
  for (int i = 0; i < 3; ++i) work();
  std::array<double, kRuns> nanoseconds{};
  for (double& each : nanoseconds) {
    int rounds = 0;
    double const start = processorSeconds();
    double taken = 0;
    do {
      work();
      ++rounds;
      taken = processorSeconds() - start;
    } while (taken < kLongEnough);
    each = taken * 1e9 / rounds / static_cast<double>(count);
  }
  std::ranges::nth_element(nanoseconds, nanoseconds.begin() + kRuns / 2);
  return nanoseconds[kRuns / 2];
}

std::string shape(std::string_view name, double nanoseconds) {
  return "nimbara " + std::string(name) + "|" + fixedDecimal(nanoseconds, 2) + "\n";
}

std::string measured(std::vector<SGP4::SatRec> const& records, SGP4::Moment moment) {
  constexpr std::size_t kMoments = 10'000;
  SGP4::SatelliteBatch batch(records);
  std::string out = shape("tick", nanosecondsEach(records.size(), [&] { batch.propagate(moment); }));
  std::vector<double> minutes(kMoments);
  for (std::size_t i = 0; i < kMoments; ++i) minutes[i] = 0.5 * static_cast<double>(i);
  std::vector<SGP4::StateVector> states(std::max(kMoments, records.size()));
  out += shape("times",
               nanosecondsEach(kMoments, [&] { SGP4::propagateMany(records.front(), minutes, states); }));
  out += shape("scalar tick", nanosecondsEach(records.size(), [&] {
                 for (std::size_t i = 0; i < records.size(); ++i) {
                   states[i] = SGP4::propagate(records[i], SGP4::minutesSince(records[i].tle, moment));
                 }
               }));
  return out;
}

Outcome<std::string> run(SatellitesOptions const& options, Session const& session) {
  if (options.action == SatellitesOptions::Action::bench) {
    auto const time = parseIso8601(options.time);
    if (!time) {
      return std::unexpected(Trouble{
          exitCode::kUsage, "'" + oneLine(options.time) +
                                "' is not a timestamp with a time zone; use one like 2026-11-21T12:00:00Z"});
    }
    auto const records = readRecords(options.file, session);
    if (!records) return std::unexpected(records.error());
    session.console.err("nimbara: kernel " + std::string(enumName(SGP4::bestKernel())) + "\n");
    return measured(*records, SGP4::momentOf(*time));
  }
  auto const minutes = readMinutes(options.minutes);
  if (!minutes) return std::unexpected(minutes.error());
  auto const records = readRecords(options.file, session);
  if (!records) return std::unexpected(records.error());
  return propagated(*records, *minutes, options.json);
}

}  // namespace

int runSatelliteFile(CommandLine const& line, Session const& session) {
  auto const out = run(line.satellites, session);
  if (!out) return session.fail(out.error().code, out.error().sentence);
  session.console.out(*out);
  return exitCode::kComplete;
}

int runSatellites(CommandLine const& line, Session const& session) {
  using Action = SatellitesOptions::Action;
  bool const ofFile = line.satellites.action == Action::propagate || line.satellites.action == Action::bench;
  return ofFile ? runSatelliteFile(line, session) : runSatelliteCatalog(line, session);
}

}  // namespace nimbara
