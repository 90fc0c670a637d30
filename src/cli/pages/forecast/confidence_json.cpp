#include "cli/pages/forecast/confidence_json.h"

#include "base/json/json_codec.h"

namespace nimbara {

void writeConfidence(JsonWriter& json, SecondForecast const& second, std::vector<DayConfidence> const& days) {
  bool const hasAnswered = second.data.has_value();
  json.beginObject();
  json.member("state", days.empty() ? "unknown" : "known");
  json.memberOrNull("provider", second.provider);
  json.memberOrNull("checkedAt", hasAnswered ? std::optional(second.answeredAt) : std::nullopt);
  json.memberOrNull("reason", second.failure ? std::optional(second.failure->detail) : std::nullopt);
  json.key("days");
  json.beginList();
  for (DayConfidence const& day : days) {
    json.separate();
    json.beginObject();
    json.member("date", formatDate(day.day));
    json.member("daysAhead", day.daysAhead);
    json.member("confidence", day.level);
    json.member("highestDifferenceC", day.highestC);
    json.member("lowestDifferenceC", day.lowestC);
    json.memberOrNull("precipDifferenceMM", day.precipMM);
    json.memberOrNull("windDifferenceKmph", day.windKmph);
    json.endObject();
  }
  json.endList();
  json.endObject();
}

}  // namespace nimbara
