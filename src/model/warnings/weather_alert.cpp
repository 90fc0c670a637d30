#include "model/warnings/weather_alert.h"

#include <algorithm>
#include <functional>
#include <tuple>

namespace nimbara {

void sortMostSevereFirst(std::vector<WeatherAlert>& alerts) {
  std::ranges::stable_sort(alerts, std::ranges::greater{}, [](WeatherAlert const& alert) {
    return std::tuple(alert.severity, alert.levelStated.value_or(true), !alert.distanceKm);
  });
}

}  // namespace nimbara
