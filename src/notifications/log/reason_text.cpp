#include "notifications/log/reason_text.h"

#include "base/text/number.h"
#include "feeds/alerts/coverage.h"
#include "feeds/fetching/failure_words.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <ranges>

namespace nimbara {

namespace {

using Relation = Measurement::Relation;

// ---- Values in the user's units

/// How a value is written: shown = metric * factor + offset.
struct Scale {
  double factor = 1;
  double offset = 0;
  int decimals = 0;
  std::string unit;

  double shown(double metric) const { return metric * factor + offset; }
};

template <class Unit>
Scale scaleOf(Unit unit, int decimals) {
  double const zero = convert(0.0, unit);
  return {convert(1.0, unit) - zero, zero, decimals, " " + std::string(symbol(unit))};
}

/// Of two temperatures: no zero point is moved.
constexpr std::array kDifferences = std::to_array<std::string_view>(
    {"temperatureDrop", "temperatureRise", "nearFreezing", "feltColder", "feltHotter", "dewPointSpread"});

Scale temperatureScale(std::string_view what, TemperatureUnit unit) {
  Scale scale = scaleOf(unit, 1);
  if (std::ranges::count(kDifferences, what) > 0) scale.offset = 0;
  return scale;
}

Scale scaleOf(LoggedMeasurement const& measured, Units const& units) {
  if (measured.unit == "°C") return temperatureScale(measured.what, units.temperature);
  if (measured.unit == "km/h") return scaleOf(units.wind, 0);
  if (measured.unit == "km") return scaleOf(units.distance, 0);
  if (measured.unit == "mm")
    return scaleOf(units.precipitation, units.precipitation == PrecipitationUnit::inch ? 2 : 1);
  if (measured.unit == "hPa") return scaleOf(units.pressure, units.pressure == PressureUnit::inHg ? 2 : 1);
  if (measured.unit.empty()) return {1, 0, 1, ""};
  return {1, 0, 0, measured.unit == "°" ? measured.unit : " " + measured.unit};
}

std::string withoutTrailingZeros(std::string number, int decimals) {
  for (int left = decimals; left > 0 && number.ends_with('0'); --left) number.pop_back();
  if (number.ends_with('.')) number.pop_back();
  return number;
}

std::string numberText(double number, int decimals, bool isExact, Texts const& texts) {
  std::string text = fixedDecimal(number, decimals);
  if (!isExact) text = withoutTrailingZeros(std::move(text), decimals);
  if (auto const point = text.find('.'); point != std::string::npos)
    text.replace(point, 1, texts.decimalPoint());
  return text;
}

/// Of the scale of warnings and advisories, whose first level is `lowest`.
std::optional<std::string> levelText(double value, int lowest, Texts const& texts) {
  auto const level = static_cast<std::size_t>(std::max(0, truncatedInteger(value) - lowest));
  if (level >= enumNames<NotificationLevel>.size()) return std::nullopt;
  return std::string(texts.text("explain.level." + std::string(enumNames<NotificationLevel>[level])));
}

/// A value beside its limit: they look alike only when they are.
class ValueTexts {
 public:
  ValueTexts(LoggedMeasurement const& measured, Units const& units, Texts const& texts)
      : what_(measured.what), scale_(scaleOf(measured, units)), texts_(texts) {
    bool const isOther = measured.value != measured.limit;
    for (int more = 0; more < 2 && isOther && of(measured.value) == of(measured.limit); ++more) {
      ++scale_.decimals;
      isExact_ = true;
    }
  }

  std::string of(double metric) const {
    bool const isAdvisory = what_ == "advisoryLevel";
    if (isAdvisory || what_ == "warningLevel") {
      if (auto level = levelText(metric, isAdvisory ? 1 : 0, texts_)) return *level;
    }
    return numberText(scale_.shown(metric), scale_.decimals, isExact_, texts_) + scale_.unit;
  }

 private:
  std::string_view what_;
  Scale scale_;
  bool isExact_ = false;
  Texts const& texts_;
};

// ---- Sentences

Relation relationOf(LoggedMeasurement const& measured) {
  return enumFromName<Relation>(measured.needs).value_or(Relation::atLeast);
}

bool holds(LoggedMeasurement const& measured) {
  return Measurement{measured.what, measured.value, relationOf(measured), measured.limit, {}}.holds();
}

bool isFloor(LoggedMeasurement const& measured) {
  return relationOf(measured) == Relation::atLeast || relationOf(measured) == Relation::above;
}

bool has(std::string const& key, Texts const& texts) {
  return texts.text(key) != key;
}

std::string noneKey(LoggedMeasurement const& measured) {
  return "explain.none." + measured.what;
}

bool isNone(LoggedMeasurement const& measured, Texts const& texts) {
  return isFloor(measured) && measured.value <= 0 && has(noneKey(measured), texts);
}

/// A limit that says nothing: anything at all reaches it.
bool hasLimit(LoggedMeasurement const& measured, Texts const& texts) {
  bool const isCounted = measured.unit.empty() && measured.limit <= 1 && has(noneKey(measured), texts);
  bool const isOpen = measured.unit.empty() && measured.limit <= 0;
  return !(relationOf(measured) == Relation::atLeast && (isCounted || isOpen));
}

/// The text of the value's name; an unknown name as it is, as of a log that a later version has written.
std::string statement(LoggedMeasurement const& measured, std::string const& value, Texts const& texts) {
  std::string const key = "explain.measure." + measured.what;
  return has(key, texts) ? texts.format(key, value) : measured.what + " " + value;
}

std::string sentence(LoggedMeasurement const& measured, Units const& units, Texts const& texts) {
  if (isNone(measured, texts)) return texts.format("explain.relation.none", texts.text(noneKey(measured)));
  ValueTexts const values(measured, units, texts);
  std::string const said = statement(measured, values.of(measured.value), texts);
  if (!hasLimit(measured, texts)) return texts.format("explain.relation.none", said);
  std::string const relation(enumName(relationOf(measured)));
  return texts.format("explain.relation." + relation, said, values.of(measured.limit));
}

/// One value between two limits.
std::string sentence(LoggedMeasurement const& floor, LoggedMeasurement const& ceiling, Units const& units,
                     Texts const& texts) {
  ValueTexts const values(floor, units, texts);
  return texts.format("explain.relation.between", statement(floor, values.of(floor.value), texts),
                      values.of(floor.limit), values.of(ceiling.limit));
}

// ---- What is worth saying

using Measured = std::vector<LoggedMeasurement>;

/// Of several that ask the same, the one that is nearest to its limit or farthest beyond it.
bool isOutdone(LoggedMeasurement const& one, Measured const& all) {
  return std::ranges::any_of(all, [&](LoggedMeasurement const& other) {
    bool const isSame = other.what == one.what && other.needs == one.needs && other.limit == one.limit;
    return isSame && (isFloor(one) ? other.value > one.value : other.value < one.value);
  });
}

bool isNoted(LoggedNotification const& line) {
  return line.failure || !line.note.empty();
}

/// Of something told what spoke for it, else what stood against it.
Measured decisive(LoggedNotification const& line, Texts const& texts) {
  bool const isFalse = line.outcome == enumName(RuleOutcome::conditionFalse);
  Measured chosen;
  for (LoggedMeasurement const& measured : line.measured) {
    bool const isSaidByNote = isNoted(line) && isNone(measured, texts);
    if (holds(measured) == isFalse || isSaidByNote || isOutdone(measured, line.measured)) continue;
    chosen.push_back(measured);
  }
  return chosen;
}

/// The other limit of the same value, if it follows.
LoggedMeasurement const* counterpart(Measured const& measured, std::size_t at) {
  if (at + 1 >= measured.size()) return nullptr;
  LoggedMeasurement const& one = measured[at];
  LoggedMeasurement const& next = measured[at + 1];
  bool const isBetween = next.what == one.what && next.value == one.value && isFloor(next) != isFloor(one);
  return isBetween ? &next : nullptr;
}

void add(std::string& text, std::string const& sentence, Texts const& texts) {
  text = text.empty() ? sentence : texts.format("explain.and", text, sentence);
}

void addMeasured(std::string& text, Measured const& measured, Units const& units, Texts const& texts) {
  for (std::size_t i = 0; i < measured.size(); ++i) {
    LoggedMeasurement const* const other = counterpart(measured, i);
    if (other == nullptr) {
      add(text, sentence(measured[i], units, texts), texts);
      continue;
    }
    bool const isFirstFloor = isFloor(measured[i]);
    add(text,
        sentence(isFirstFloor ? measured[i] : *other, isFirstFloor ? *other : measured[i], units, texts),
        texts);
    ++i;
  }
}

/// What a service or the desktop says of a failure, as a sentence.
std::string asSentence(std::string_view text, Texts const& texts) {
  std::string said(text);
  if (!said.empty() && said.front() >= 'a' && said.front() <= 'z') said.front() += 'A' - 'a';
  bool const isEnded = said.ends_with('.') || said.ends_with('!') || said.ends_with('?');
  return isEnded ? said : texts.format("explain.relation.none", said);
}

constexpr std::array<std::string_view, enumNames<RuleInput>.size()> kFeeds{
    "forecast", "forecast", "warnings",   "warnings",  "earthquakes", "kp",     "airQuality",
    "storms",   "fires",    "advisories", "lightning", "typhoons",    "nowcast"};

std::string failureSentence(InputFailure const& failure, Texts const& texts) {
  std::string const key = "explain.feed." + std::string(kFeeds[static_cast<std::size_t>(failure.input)]);
  std::string const feed = failure.service.empty() ? std::string(texts.text(key))
                                                   : texts.format(key, warningServiceName(failure.service));
  return asSentence(texts.format("explain.feedFailed", feed, failureText(failure.failure, texts)), texts);
}

std::string noteText(LoggedNotification const& line, Texts const& texts) {
  if (line.failure) return failureSentence(*line.failure, texts);
  std::string const key = "explain.note." + line.note;
  if (has(key, texts)) return std::string(texts.text(key));
  std::string const ofOwnRule = "customnotif.outcome." + line.note;
  if (has(ofOwnRule, texts)) return asSentence(texts.text(ofOwnRule), texts);
  return asSentence(line.note, texts);
}

/// Most outcomes read the same in a preview.
std::string outcomeText(std::string const& outcome, ReasonTense tense, Texts const& texts) {
  std::string const preview = "explain.preview." + outcome;
  if (tense == ReasonTense::preview && has(preview, texts)) return std::string(texts.text(preview));
  std::string const key = "explain.outcome." + outcome;
  return has(key, texts) ? std::string(texts.text(key)) : asSentence(outcome, texts);
}

}  // namespace

std::string reasonText(LoggedNotification const& line, Units const& units, Texts const& texts,
                       ReasonTense tense) {
  std::string text = outcomeText(line.outcome, tense, texts);
  addMeasured(text, decisive(line, texts), units, texts);
  if (isNoted(line)) add(text, noteText(line, texts), texts);
  if (line.updates > 0)
    add(text, texts.format("explain.updates", static_cast<std::int64_t>(line.updates)), texts);
  return text;
}

}  // namespace nimbara
