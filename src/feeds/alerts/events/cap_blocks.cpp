#include "feeds/alerts/events/cap_blocks.h"

#include "base/text/search_text.h"
#include "base/text/text.h"
#include "feeds/alerts/gov_alerts.h"
#include "feeds/awareness/meteo_alarm_classes.h"
#include "feeds/cap/cap_language.h"

#include <algorithm>
#include <array>

namespace nimbara {

namespace {

using enum WarningKind;

struct KindWords {
  WarningKind kind;
  std::string_view words;  ///< parts of words, separated by "|"
};

/// What neither the American nor the European names have, the gravest first.
constexpr KindWords kKindWords[] = {
    {tropicalCyclone,
     "cyclone|typhoon|ciclón|huracán|tormenta tropical|tempête "
     "tropicale|ciclone|furacão|台風|颱風|台风|热带气旋|"
     "熱帶氣旋|태풍|bão|siklon|ураган|тайфун|циклон|إعصار|चक्रवात|ঘূর্ণিঝড়"},
    {tornado, "tornado|龙卷|龍捲|竜巻|торнадо|смерч"},
    {coast, "tsunami|津波|海啸|海嘯|高潮|高波|波浪|marejada|ressaca|цунами|gelombang|คลื่น|sóng lớn"},
    {thunderstorm, "雷|冰雹|ひょう|гроз|رعد|برد|petir|ฟ้าผ่า|dông|granizo|낙뢰"},
    {avalanche, "雪崩|なだれ|лавин"},
    {snow, "暴雪|大雪|風雪|吹雪|대설|метел|вьюг|ثلج|ثلوج|yoğun kar"},
    {ice, "结冰|結冰|路面凍結|着氷|гололед|гололёд|көктайғақ"},
    {rain,
     "landslide|mudflow|暴雨|大雨|洪水|豪雨|호우|ливн|ливен|дожд|паводок|наводнени|أمطار|سيول|hujan|banjir|"
     "ฝน|น้ำท่วม|mưa|"
     "lũ|yağmur|yağış|sel baskını|वर्षा|बारिश|बाढ़|aluvión|crecida|enchente|chuva|жаңбыр|deslizamiento"},
    {dust, "sandstorm|sand storm|沙尘|沙塵|黄砂|황사|пыльн|غبار|عاصفة رملية|धूल"},
    {air, "air pollution|smog|haze|霾|미세먼지|calidad del aire|qualidade do ar|смог"},
    {smoke, "volcanic ash|ceniza|дым|火山灰"},
    {fire, "山火|森林火|火災|火灾|산불|пожар|حرائق|kebakaran|incendio|orman yangın|өрт"},
    {fog, "大雾|大霧|濃霧|浓雾|안개|туман|ضباب|kabut|หมอก|sương mù|कोहरा|कोहरे|neblina"},
    {heat, "高温|高溫|酷熱|酷暑|폭염|жара|зной|موجة حر|موجة حارة|aşırı sıcak|ola de calor"},
    {cold,
     "寒潮|低温|低溫|寒冷|霜|한파|мороз|заморозк|هواء بارد|موجة برد|หนาว|rét "
     "đậm|शीत|helada|friaje|геада|аяз"},
    {sun, "ultraviolet|uv index|紫外線|紫外线|자외선"},
    {wind,
     "squall|大风|大風|強風|强风|季候風|暴風|강풍|ветер|ветр|шквал|шторм|رياح|عاصفة|angin "
     "kencang|ลมแรง|พายุ|gió mạnh|"
     "strong monsoon|fırtına|आंधी|आँधी|vendaval|monção"},
};

constexpr std::array kColours = std::to_array<std::string_view>({"green", "yellow", "orange", "red"});

constexpr std::array kWaterEvents = std::to_array<std::string_view>(
    {"small craft", "gale warning", "storm warning for", "marine", "high seas", "shipping", "coastal waters",
     "offshore", "sea area", "boating", "mariner", "seewetter", "для акватор", "avis de grand frais",
     "al mare"});
constexpr std::array kWaterAreas =
    std::to_array<std::string_view>({"coastal waters", " waters", "offshore", "ocean", "high seas",
                                     "sea area", "marine", "seegebiet", "strait of"});

std::string_view parameterOf(CapInfo const& info, std::string_view name) {
  auto const found = std::ranges::find_if(
      info.parameters, [&](CapValue const& value) { return asciiLowered(value.name) == name; });
  return found == info.parameters.end() ? std::string_view() : std::string_view(found->value);
}

template <std::size_t count>
bool hasAny(std::string_view text, std::array<std::string_view, count> const& words) {
  return std::ranges::any_of(words, [&](std::string_view word) { return text.contains(word); });
}

std::string colourOfWord(std::string_view word) {
  if (word == "amber") return "orange";
  return std::ranges::count(kColours, word) > 0 ? std::string(word) : std::string();
}

std::string colourOfNumber(std::string_view digit) {
  bool const isLevel =
      digit.size() == 1 && digit[0] >= '1' && digit[0] < '1' + static_cast<int>(kColours.size());
  return isLevel ? std::string(kColours[static_cast<std::size_t>(digit[0] - '1')]) : std::string();
}

WarningKind kindInWords(std::string_view text) {
  std::string const lowered = accentsKept(text);
  for (KindWords const& row : kKindWords) {
    for (std::string_view const word : split(row.words, '|')) {
      if (lowered.contains(word)) return row.kind;
    }
  }
  return other;
}

/// American names only in English: parts of them are parts of other languages' words.
WarningKind kindOfName(std::string_view name, bool isEnglish) {
  if (trimmed(name).empty()) return other;
  if (auto const kind = isEnglish ? nwsWarningKind(name) : other; kind != other) {
    // Of a storm they do not say of what.
    auto const further = kind == wind ? kindInWords(name) : other;
    return further == other ? kind : further;
  }
  auto const type = meteoAlarmTypeInWords(name);
  // The European names have no tropical cyclones: theirs are storms.
  if (type == MeteoAlarmType::wind || type == MeteoAlarmType::generic) {
    auto const kind = kindInWords(name);
    if (kind != other) return kind;
  }
  return warningKindOf(type);
}

bool hasLetters(std::string_view text) {
  return std::ranges::any_of(text, [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); });
}

bool isAllClear(std::string const& responseType) {
  return asciiLowered(trimmed(responseType)) == "allclear";
}

/// In words, by services that have no awareness levels; green, which would end a warning, is not believed
/// there.
std::string statedColourOf(CapInfo const& info) {
  constexpr std::string_view kNames[] = {"colourcode", "colorcode",    "colour",
                                         "color",      "alert colour", "alert color"};
  for (CapValue const& parameter : info.parameters) {
    if (std::ranges::count(kNames, asciiLowered(trimmed(parameter.name))) == 0) continue;
    std::string colour(colourOfWord(asciiLowered(trimmed(parameter.value))));
    if (!colour.empty() && colour != kColours.front()) return colour;
  }
  return {};
}

}  // namespace

CapGrade gradeOf(CapInfo const& info) {
  std::string const severity = asciiLowered(trimmed(info.severity));
  if (severity == "extreme") return {AlertSeverity::critical, true};
  if (severity == "severe") return {AlertSeverity::warning, true};
  if (severity == "moderate") return {AlertSeverity::advisory, true};
  if (severity == "minor") return {AlertSeverity::info, true};
  return {};
}

std::string colourOf(CapInfo const& info) {
  auto const parts = split(parameterOf(info, "awareness_level"), ';');
  std::string colour;
  for (std::string_view const part : parts) {
    if (colour.empty()) colour = colourOfWord(asciiLowered(trimmed(part)));
  }
  for (std::string_view const part : parts) {
    if (colour.empty()) colour = colourOfNumber(trimmed(part));
  }
  return colour.empty() ? statedColourOf(info) : colour;
}

WarningKind kindOf(CapInfo const& info) {
  auto const awareness = awarenessTypeOf(parameterOf(info, "awareness_type"));
  if (awareness && *awareness != MeteoAlarmType::generic) return warningKindOf(*awareness);
  for (CapValue const& code : info.eventCodes) {
    auto const kind = hasLetters(code.value) ? kindOfName(code.value, true) : other;
    if (kind != other) return kind;
  }
  std::string const language = primaryLanguage(info.language);
  bool const isEnglish = language.empty() || language == "en";
  auto const kind = kindOfName(info.event, isEnglish);
  return kind != other ? kind : kindOfName(info.headline, isEnglish);
}

bool tellsTheEnd(CapInfo const& info) {
  return asciiLowered(trimmed(info.urgency)) == "past" ||
         std::ranges::any_of(info.responseTypes, isAllClear) || colourOf(info) == kColours.front();
}

bool isOver(CapInfo const& info, Instant now) {
  return info.expires && *info.expires <= now;
}

bool isForWaters(CapInfo const& info) {
  if (asciiLowered(parameterOf(info, "geographicdomain")) == "marine") return true;
  if (hasAny(asciiLowered(info.event), kWaterEvents)) return true;
  auto const isWaters = [](CapArea const& area) { return hasAny(asciiLowered(area.areaDesc), kWaterAreas); };
  return !info.areas.empty() && std::ranges::all_of(info.areas, isWaters);
}

std::string titleOf(CapInfo const& info) {
  constexpr std::size_t kLongest = 120;
  for (std::string const* const text : {&info.event, &info.headline, &info.description, &info.instruction}) {
    if (!trimmed(*text).empty()) return oneLine(trimmed(*text), kLongest);
  }
  return info.eventCodes.empty() ? info.senderName : info.eventCodes.front().value;
}

std::string textOf(CapInfo const& info) {
  if (!trimmed(info.description).empty()) return info.description;
  return trimmed(info.headline).empty() ? std::string() : info.headline;
}

std::string issuerOf(CapAlert const& message, CapInfo const& info) {
  if (!trimmed(info.senderName).empty()) return std::string(trimmed(info.senderName));
  // Of "name@service" the person is nobody's business.
  return message.sender.substr(message.sender.find('@') + 1);
}

std::string eventWords(CapInfo const& info) {
  if (auto const type = parameterOf(info, "awareness_type"); !type.empty())
    return asciiLowered(trimmed(type));
  if (!info.eventCodes.empty()) return info.eventCodes.front().name + ":" + info.eventCodes.front().value;
  return accentsKept(info.event);
}

}  // namespace nimbara
