#include "app/words/brief/brief_text.h"

#include "analysis/brief/weather_brief.h"
#include "analysis/precip_kind.h"
#include "app/words/brief/tip_inputs.h"
#include "app/words/hazards/climate_text.h"
#include "model/process.h"

namespace nimbara {

std::vector<std::string> briefLines(WeatherData const& weather, CardBeside const& beside,
                                    HazardWords const& words) {
  Texts const& texts = words.texts;
  BriefBeside known;
  if (beside.nowcast != nullptr && beside.nowcast->state == NowcastReading::State::current) {
    Nowcast named = beside.nowcast->nowcast;
    nameFall(named, weather.allHourly);
    known.nowcast = PrecipPredictor(std::move(named)).outlook(words.now);
  }
  Brief const brief = weatherBrief(weather, known, words.now, words.units, texts, words.calendar);
  std::vector<std::string> lines;
  for (BriefPart const part : brief.order) {
    if (part == BriefPart::now) continue;
    lines.push_back(
        texts.format("brief.named", texts.text("brief.part." + std::string(enumName(part))), brief[part]));
  }
  if (beside.climate == nullptr || lines.empty()) return lines;
  if (std::string const usual = climateText(*beside.climate, words).sentence; !usual.empty())
    lines.push_back(texts.format("brief.sentence", usual));
  return lines;
}

std::vector<std::string> adviceLines(WeatherData const& weather, Settings const* settings,
                                     AirQualityForecast const* air, HazardWords const& words) {
  Texts const& texts = words.texts;
  Calendar const calendar = calendarOf(weather, words.calendar);
  TipPreferences const preferences = settings == nullptr ? TipPreferences() : tipPreferences(*settings);
  std::vector<TipAir> known;
  if (air != nullptr) known = tipAir(*air, {weather.location.latitude, weather.location.longitude});
  std::vector<std::string> lines;
  for (std::string_view const name : enumNames<Activity>) {
    Activity const activity = *enumFromName<Activity>(name);
    Tip tip = TipGenerator{}.tip(activity, weather, words.now, preferences, known, calendar);
    if (tip.state != Tip::State::windows) continue;
    tip.windows.resize(1);
    lines.push_back(texts.format("brief.named", texts.text("advice.activity." + std::string(name)),
                                 tipLines(tip, words.now, words.units, texts, calendar).front()));
  }
  return lines;
}

}  // namespace nimbara
