// The tropical storms of the generated world: one after another along fixed ways over each sea, a pure
// function of the moment. Each lives for eight days and is reported on every six hours.
#pragma once

#include "base/geodesy.h"
#include "base/time/instant.h"

#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

/// A stretch of sea where one storm after another takes the same way.
struct DemoStormLane {
  std::string_view basin;  ///< "al"
  std::string_view bin;    ///< its place on the maps of the National Hurricane Center; empty for other seas
  Coordinate begin;
  Coordinate end;
  std::chrono::hours shift;  ///< so that not all storms end at once
  bool isInSeasonOnly;
};

struct DemoStorm {
  DemoStormLane const* lane = nullptr;
  std::int64_t number = 0;  ///< of the lane, in order
  Instant begin;

  Instant end() const;
};

struct DemoStormMoment {
  Coordinate place;
  double knots = 0;
  double direction = 0;
  double speedMph = 0;
};

/// The run that the present reports are of; they come out three hours later.
Instant demoStormRun(Instant now);
inline constexpr std::chrono::hours kDemoReportDelay{3};

/// Those of the present reports, of all seas.
std::vector<DemoStorm> demoStormsAt(Instant now);

DemoStormMoment demoStormMoment(DemoStorm const& storm, Instant instant);

/// "al092026".
std::string demoStormId(DemoStorm const& storm);
std::string_view demoStormName(DemoStorm const& storm);

}  // namespace nimbara
