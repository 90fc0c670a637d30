#include "analysis/precip_kind.h"

#include "model/upcoming_hours.h"

namespace nimbara {

Fall fallAt(double celsius) {
  constexpr double kWarmestSnow = -0.4;
  constexpr double kColdestRain = 2.4;
  if (celsius < kWarmestSnow) return Fall::snow;
  return celsius > kColdestRain ? Fall::rain : Fall::sleet;
}

void nameFall(Nowcast& nowcast, std::span<HourlyForecast const> hours) {
  for (NowcastStep& step : nowcast.steps) {
    if (!isWet(step) || step.fall != Fall::unknown) continue;
    HourlyForecast const* const hour = hourAt(hours, step.from + (step.to - step.from) / 2);
    if (hour != nullptr) step.fall = fallAt(hour->tempC);
  }
}

}  // namespace nimbara
