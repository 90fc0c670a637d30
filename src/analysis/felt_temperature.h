// How warm or cold the air feels, for the warnings of heat and cold. Pure.
#pragma once

namespace nimbara {

/// °C from the temperature (°C), the reported feels-like temperature (°C), relative humidity (%) and wind
/// (km/h). From 25 °C on the larger of the heat index and the reported value, up to 10 °C the smaller of the
/// wind chill and the reported value, the reported value between.
double feltTemperature(double celsius, double feelsLike, double humidity, double windKmph);

/// The regression of the US National Weather Service (Rothfusz, 1990), °C.
double heatIndex(double celsius, double humidity);

/// The wind chill of the Meteorological Service of Canada and the US National Weather Service (2001), °C.
double windChill(double celsius, double windKmph);

}  // namespace nimbara
