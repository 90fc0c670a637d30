#include "app/words/brief_text.h"

#include "analysis/precip_kind.h"
#include "analysis/tip_generator.h"
#include "analysis/weather_brief.h"
#include "model/process.h"

namespace nimbara {

std::vector<std::string> briefLines(WeatherData const& weather, NowcastReading const* nowcast, Instant now,
                                    Units const& units, Texts const& texts, Calendar const& fallback) {
  BriefBeside beside;
  if (nowcast != nullptr && nowcast->state == NowcastReading::State::current) {
    Nowcast named = nowcast->nowcast;
    nameFall(named, weather.allHourly);
    beside.nowcast = PrecipPredictor(std::move(named)).outlook(now);
  }
  Brief const brief = weatherBrief(weather, beside, now, units, texts, fallback);
  std::vector<std::string> lines;
  for (BriefPart const part : brief.order) {
    if (part == BriefPart::now) continue;
    lines.push_back(
        texts.format("brief.named", texts.text("brief.part." + std::string(enumName(part))), brief[part]));
  }
  return lines;
}

std::vector<std::string> adviceLines(WeatherData const& weather, Instant now, Units const& units,
                                     Texts const& texts, Calendar const& fallback) {
  Calendar const calendar = calendarOf(weather, fallback);
  std::vector<std::string> lines;
  for (std::string_view const name : enumNames<Activity>) {
    Activity const activity = *enumFromName<Activity>(name);
    Tip tip = TipGenerator{}.tip(activity, weather, now, {}, {}, calendar);
    if (tip.state != Tip::State::windows) continue;
    tip.windows.resize(1);
    lines.push_back(texts.format("brief.named", texts.text("advice.activity." + std::string(name)),
                                 tipLines(tip, now, units, texts, calendar).front()));
  }
  return lines;
}

}  // namespace nimbara
