#include "app/services/feed_services.h"
#include "app/words/hazards/climate_text.h"
#include "cli/commands/feed_commands.h"
#include "cli/commands/hazards/hazard_frame.h"

namespace nimbara {

namespace {

void writeClimate(JsonWriter& json, ClimateOutlook const& outlook, HazardCheck const& check,
                  std::string const& sentence) {
  json.member("period", "1991-2020");
  json.member("grid", outlook.grid);
  json.member("date", formatDate(outlook.date));
  json.memberOrNull("day", outlook.usual);
  json.memberOrNull("today", outlook.today);
  json.memberOrNull("modelBias", outlook.bias);
  json.memberOrNull("anomaly", outlook.anomaly());
  json.memberOrNull("word", outlook.word());
  json.memberOrNull("sentence", sentence.empty() ? std::nullopt : std::optional(sentence));
  json.member("state", check.state);
  json.memberOrNull("checkedAt", check.checkedAt);
  json.memberOrNull("reason", reasonOf(check));
}

}  // namespace

int runClimate(CommandLine const& line, Session const& session) {
  return runHazard(line, session, [&](RunContext& context, Place const& place, HazardWords const& words) {
    Date const today = dayAt(words.calendar, words.now);
    auto const reading = context.app().feeds().climate().fetch(place.coordinate, today, session.stop);
    ClimateText const text = climateText(reading.data, words);
    HazardAnswer answer;
    answer.check = hazardCheck(reading, reading.data.usual.has_value());
    answer.subject = "the usual temperatures";
    answer.heading = text.sentence.empty() ? text.band : text.sentence;
    if (!text.sentence.empty()) answer.lines.push_back({text.band, ""});
    answer.lines.push_back({text.today, ""});
    answer.notes = {text.source};
    answer.writeDocument = [outlook = reading.data, check = answer.check, sentence = text.sentence](
                               JsonWriter& json) { writeClimate(json, outlook, check, sentence); };
    return answer;
  });
}

}  // namespace nimbara
