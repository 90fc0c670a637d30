#include "model/forecast_insight.h"

#include <algorithm>

namespace nimbara {

std::vector<WeatherAlert> shownAlerts(std::vector<WeatherAlert> const& alerts,
                                      std::vector<SupersededAlert> const& superseded) {
  std::vector<WeatherAlert> shown;
  for (WeatherAlert const& alert : alerts) {
    auto const truer = std::ranges::find(superseded, alert.id, &SupersededAlert::alert);
    if (truer == superseded.end()) {
      shown.push_back(alert);
    } else if (truer->instead) {
      shown.push_back(*truer->instead);
    }
  }
  sortMostSevereFirst(shown);
  return shown;
}

}  // namespace nimbara
