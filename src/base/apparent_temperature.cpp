#include "base/apparent_temperature.h"

#include <cmath>

namespace nimbara {

double apparentTemperature(double celsius, double humidity, double windKmh) {
  double const vapour = humidity / 100 * 6.105 * std::exp(17.27 * celsius / (237.7 + celsius));  // hPa
  return celsius + 0.33 * vapour - 0.7 * windKmh / 3.6 - 4;
}

}  // namespace nimbara
