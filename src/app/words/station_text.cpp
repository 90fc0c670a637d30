#include "app/words/station_text.h"

#include "base/text/number.h"
#include "base/words/time_words.h"
#include "feeds/fetching/failure_words.h"

#include <algorithm>

namespace nimbara {

namespace {

StationModuleKind kindOf(StationQuantity quantity) {
  switch (quantity) {
    case StationQuantity::windSpeed:
    case StationQuantity::windDirection:
      return StationModuleKind::wind;
    case StationQuantity::rainLastHour:
      return StationModuleKind::rain;
    case StationQuantity::pressure:
      return StationModuleKind::base;
    default:
      return StationModuleKind::outdoor;
  }
}

template <class Unit>
std::string inUnit(double value, Unit unit) {
  return display(value, unit) + " " + std::string(symbol(unit));
}

}  // namespace

std::string moduleText(std::string const& name, StationModuleKind kind, Texts const& texts) {
  return name.empty() ? std::string(texts.text("station.module." + std::string(enumName(kind)))) : name;
}

std::string valueText(StationQuantity quantity, double value, Units const& units) {
  switch (quantity) {
    case StationQuantity::temperature:
      // A thermometer of one's own is read to a tenth.
      return fixedDecimal(convert(value, units.temperature), 1) + " " +
             std::string(symbol(units.temperature));
    case StationQuantity::pressure:
    case StationQuantity::absolutePressure:
      return inUnit(value, units.pressure);
    case StationQuantity::windSpeed:
    case StationQuantity::gustSpeed:
      return inUnit(value, units.wind);
    case StationQuantity::rainLastHour:
    case StationQuantity::rainLastDay:
      return inUnit(value, units.precipitation);
    default:
      return roundedText(value) + " " + std::string(unitOf(quantity));
  }
}

namespace {

std::string fromText(StationShown const& shown, Instant observedAt, Units const& units, Texts const& texts,
                     Instant now) {
  std::string const age = ageText(observedAt, now, texts);
  auto const& together = shown.reading.together;
  if (!together) return texts.format("station.live", age);
  constexpr int kDecimals = 1;
  std::string const distance = fixedDecimal(convert(together->withinKm, units.distance), kDecimals) + " " +
                               std::string(symbol(units.distance));
  return texts.format("station.around", together->used, distance, age);
}

}  // namespace

std::string liveText(StationShown const& shown, Units const& units, Texts const& texts, Instant now) {
  if (!shown.isLive()) return {};
  Instant const oldest = std::ranges::min_element(shown.values, {}, &OverlaidValue::observedAt)->observedAt;
  return fromText(shown, oldest, units, texts, now);
}

std::string markText(StationShown const& shown, StationQuantity quantity, Units const& units,
                     Texts const& texts, Instant now) {
  auto const value = std::ranges::find(shown.values, quantity, &OverlaidValue::quantity);
  return value == shown.values.end() ? std::string() : fromText(shown, value->observedAt, units, texts, now);
}

std::string doubtText(DoubtedValue const& doubted, Units const& units, Texts const& texts, Instant now) {
  std::string const module = moduleText(doubted.module, kindOf(doubted.quantity), texts);
  std::string const key = "station.doubt." + std::string(enumName(doubted.doubt));
  std::string const value = doubted.value ? valueText(doubted.quantity, *doubted.value, units) : "";
  switch (doubted.doubt) {
    case StationDoubt::old:
      return texts.format(key, module, value, ageText(doubted.observedAt.value_or(now), now, texts));
    case StationDoubt::farOff:
      return texts.format(key, module, value,
                          valueText(doubted.quantity, doubted.expected.value_or(0), units));
    case StationDoubt::inSun:
    case StationDoubt::indoors:
      return texts.format(key, module, value);
    default:
      return texts.format(key, module);
  }
}

std::string tokensText(StationTokensIn tokens, Texts const& texts) {
  if (tokens == StationTokensIn::nowhere) return {};
  return std::string(texts.text("station.tokens." + std::string(enumName(tokens))));
}

std::string stationProblemText(StationsReading const& reading, Texts const& texts) {
  bool const hasNone = reading.state == StationState::current && reading.station() == nullptr;
  if (hasNone && reading.kind == StationLinkKind::around)
    return std::string(
        texts.text(reading.chosen.empty() ? "station.state.publicFew" : "station.state.publicGone"));
  if (hasNone) return std::string(texts.text("station.state.none"));
  if (reading.state == StationState::current) return {};
  using Kind = StationProblem::Kind;
  if (reading.problem && reading.problem->kind == Kind::tooMany)
    return std::string(texts.text("station.state.tooMany"));
  if (reading.problem && reading.problem->kind == Kind::locked)
    return std::string(texts.text("station.state.locked"));
  if (reading.state != StationState::failed)
    return std::string(texts.text("station.state." + std::string(enumName(reading.state))));
  ServiceFailure const failure =
      reading.problem ? reading.problem->failure : ServiceFailure::of(ServiceFailure::Kind::noAnswer);
  return texts.format("station.state.failed", failureText(failure, texts));
}

}  // namespace nimbara
