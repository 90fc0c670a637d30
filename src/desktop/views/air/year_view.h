// What temperature each day of the year usually has at a place, to be painted: bands of the years' daily
// means in the user's unit, and today's in them. Pure.
#pragma once

#include "desktop/views/hours_view.h"

#include <array>
#include <string>
#include <vector>

namespace nimbara {

struct ClimateOutlook;

struct YearDay {
  double x = 0;  ///< day of a leap year, 0-365
  double p10 = 0, p20 = 0, p50 = 0, p80 = 0, p90 = 0;

  bool operator==(YearDay const&) const = default;
};

struct YearCurve {
  std::vector<YearDay> days;        ///< those that are known
  std::vector<std::string> months;  ///< twelve names
  Axis axis;
  std::string unit;
  double todayX = -1;  ///< negative: not known
  double today = 0;    ///< comparable with the bands

  bool operator==(YearCurve const&) const = default;
};

YearCurve yearCurve(ClimateOutlook const& outlook, ViewContext const& context);

/// Puts behind the meteogram's temperatures what is usual on its days. `data` gave `meteogram`. Nothing for a
/// place whose usual temperatures are not known.
void addUsual(Meteogram& meteogram, WeatherData const& data, ClimateOutlook const& outlook,
              ViewContext const& context);

}  // namespace nimbara
