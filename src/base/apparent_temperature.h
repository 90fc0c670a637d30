// How warm the air feels, for sources that do not say it.
#pragma once

namespace nimbara {

/// °C that a walker in the shade feels at an air temperature (°C), relative humidity (%) and wind (km/h at
/// 10 m): R. G. Steadman, "Norms of apparent temperature in Australia", 1994, in the form without radiation
/// that the Australian Bureau of Meteorology publishes.
double apparentTemperature(double celsius, double humidity, double windKmh);

}  // namespace nimbara
