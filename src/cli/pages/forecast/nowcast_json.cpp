#include "cli/pages/forecast/nowcast_json.h"

namespace nimbara {

namespace {

using State = NowcastReading::State;

/// A source that could not be checked is named with its kind, so that this differs from nobody having any.
void writeSource(JsonWriter& json, NowcastReading const& reading) {
  bool const isFailed = reading.state == State::failed;
  std::optional<std::string_view> source;
  if (reading.state == State::current) source = reading.nowcast.source;
  if (isFailed) source = enumName(reading.misses.front().source);
  json.memberOrNull("source", source);
  json.member("kind", isFailed ? kindOf(reading.misses.front().source) : reading.nowcast.kind);
}

void writeSteps(JsonWriter& json, std::vector<NowcastStep> const& steps) {
  json.key("steps");
  json.beginList();
  for (NowcastStep const& step : steps) {
    json.separate();
    json.beginObject();
    json.member("from", step.from);
    json.member("to", step.to);
    json.memberOrNull("mmPerHour", step.mmPerHour);
    if (isWet(step) && step.fall != Fall::unknown) json.member("fall", step.fall);
    json.endObject();
  }
  json.endList();
}

void writeMisses(JsonWriter& json, std::vector<NowcastMiss> const& misses) {
  json.key("unchecked");
  json.beginList();
  for (NowcastMiss const& miss : misses) {
    json.separate();
    json.beginObject();
    json.member("source", enumName(miss.source));
    json.member("reason", sentenceOf(miss));
    json.endObject();
  }
  json.endList();
}

}  // namespace

void writeNowcast(JsonWriter& json, NowcastReading const& reading,
                  std::optional<std::string> const& sentence) {
  json.beginObject();
  writeSource(json, reading);
  json.memberOrNull("issued", reading.nowcast.issued);
  writeSteps(json, reading.nowcast.steps);
  json.memberOrNull("sentence", sentence);
  json.member("state", reading.state);
  json.memberOrNull("checkedAt", reading.checkedAt);
  writeMisses(json, reading.misses);
  json.endObject();
}

}  // namespace nimbara
