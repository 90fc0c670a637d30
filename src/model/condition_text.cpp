#include "model/condition_text.h"

namespace nimbara {

std::string conditionText(WeatherConditionCode condition, bool isDay, Texts const& texts) {
  if (condition == WeatherConditionCode::sunny && !isDay) {
    return std::string(texts.text("condition.clearNight"));
  }
  return std::string(texts.text("condition." + std::string(enumName(condition))));
}

}  // namespace nimbara
