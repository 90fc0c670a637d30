#include "desktop/views/notices/rules_view.h"

#include "base/text/text.h"
#include "notifications/custom/custom_rule_text.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace nimbara {

namespace {

using Operator = ConditionOperator;
using Type = ConditionType;

/// Where a limit usually lies, and between what it may; metric, the step in the user's unit.
struct LimitRow {
  double usual;
  double from;
  double to;
  double step;
};

LimitRow limitOf(Type type) {
  switch (type) {
    case Type::precipitation:
    case Type::stationRain:
      return {2, 0, 500, 0.5};
    case Type::temperature:
    case Type::feelsLike:
    case Type::stationTemperature:
      return {0, -80, 60, 1};
    case Type::dewPoint:
      return {16, -80, 60, 1};
    case Type::uvIndex:
      return {6, 0, 20, 1};
    case Type::windSpeed:
    case Type::windGust:
    case Type::stationWind:
      return {50, 0, 400, 5};
    case Type::visibility:
      return {1, 0, 100, 1};
    case Type::pressure:
      return {1000, 850, 1090, 1};
    case Type::airQuality:
      return {35, 0, 1000, 5};
    case Type::earthquake:
      return {4, 0, 10, 0.5};
    case Type::rainWithin:
      return {30, CustomNotification::kLeastRainMinutes, CustomNotification::kMostRainMinutes, 5};
    default:
      return {60, 0, 100, 5};
  }
}

constexpr std::array kSpans{0, 1, 3, 6, 12, 24, 48, 72, 120, CustomNotification::kFarthestHours};

std::vector<Operator> comparisonsOf(Type type) {
  ConditionKind const& kind = kindOf(type);
  if (kind.isEvent()) return {Operator::any};
  if (kind.isWithin()) return {Operator::below};
  if (kind.canBeAny()) return {Operator::any, Operator::above, Operator::below};
  return {Operator::above, Operator::below};
}

bool isPlaceKnown(CustomNotification const& rule, PlaceList const& places) {
  return !rule.locationID || places.find(*rule.locationID) != nullptr;
}

std::string placeName(CustomNotification const& rule, PlaceList const& places, ViewContext const& view) {
  if (!rule.locationID) return view.text("customnotif.place.selected");
  SavedPlace const* const place = places.find(*rule.locationID);
  return place == nullptr ? view.text("customnotif.place.deleted") : place->name;
}

std::string faultText(CustomNotification const& draft, PlaceList const& places, ViewContext const& view) {
  std::string_view key;
  if (trimmed(draft.title).empty()) key = "title";
  if (draft.scheduledDays.empty()) key = "days";
  if (!isPlaceKnown(draft, places)) key = "place";
  if (!key.empty()) return view.text("desktop.rules.fault." + std::string(key));
  return faultOf(draft).value_or(std::string());
}

std::string spanText(int hours, ViewContext const& view) {
  if (hours == 0) return view.text("desktop.rules.span.now");
  return view.texts.format("customnotif.desc.window", hours);
}

double rounded(double value, double decimals) {
  double const grain = std::pow(10, decimals);
  return std::round(value * grain) / grain;
}

double stepOf(ConditionScale const& scale, LimitRow const& limit) {
  bool const isInches = scale.decimals == 2;
  return isInches ? 0.1 : limit.step;
}

void setLimit(DraftView& shown, CustomNotification const& draft, Units const& units) {
  ConditionScale const scale = conditionScale(kindOf(draft.conditionType).unit, units);
  LimitRow const limit = limitOf(draft.conditionType);
  shown.decimals = scale.decimals;
  shown.threshold = rounded(scale.shown(draft.threshold), shown.decimals);
  shown.from = rounded(scale.shown(limit.from), shown.decimals);
  shown.to = rounded(scale.shown(limit.to), shown.decimals);
  shown.step = stepOf(scale, limit);
  shown.unit = scale.unit;
}

}  // namespace

std::vector<RuleView> ruleViews(NotificationsState const& state, PlaceList const& places,
                                ViewContext const& view) {
  std::vector<RuleView> shown;
  shown.reserve(state.rules.rules.size());
  for (CustomNotification const& rule : state.rules.rules) {
    shown.push_back({rule.id.text(), rule.title, ruleDescription(rule, view.units, view.texts),
                     ruleSchedule(rule, view.texts) + "; " + placeName(rule, places, view), rule.isEnabled,
                     !isPlaceKnown(rule, places)});
  }
  return shown;
}

CustomNotification newDraft(Units const& units) {
  CustomNotification draft;
  draft.id = Uuid::random();
  draft.scheduledDays = EnumSet<DayOfWeek>::all();
  draft.lookaheadHours = 24;
  return withKind(draft, Type::windGust, units);
}

CustomNotification withKind(CustomNotification draft, Type kind, Units const& units) {
  LimitRow const limit = limitOf(kind);
  ConditionScale const scale = conditionScale(kindOf(kind).unit, units);
  double const step = stepOf(scale, limit);
  if (kindOf(draft.conditionType).isWithin()) draft.conditionOperator = Operator::above;
  draft.conditionType = kind;
  if (kindOf(kind).isWithin()) draft.checkHour = CustomNotification::kImmediately;
  double const shown = scale.shown(limit.usual);
  double const round = std::round(shown / step) * step;
  draft.threshold = scale.metric(round == 0 && shown > 0 ? step : round);
  auto const allowed = comparisonsOf(kind);
  if (std::ranges::count(allowed, draft.conditionOperator) == 0 || allowed.size() == 3) {
    draft.conditionOperator = allowed.size() == 3 ? Operator::above : allowed.front();
  }
  return draft;
}

CustomNotification withThreshold(CustomNotification draft, double shown, Units const& units) {
  draft.threshold = conditionScale(kindOf(draft.conditionType).unit, units).metric(shown);
  return draft;
}

DraftView draftView(CustomNotification const& draft, PlaceList const& places, ViewContext const& view) {
  DraftView shown;
  shown.id = draft.id.text();
  shown.title = draft.title;
  shown.kind = enumName(draft.conditionType);
  shown.comparison = enumName(draft.conditionOperator);
  shown.hasThreshold = draft.conditionOperator != Operator::any;
  setLimit(shown, draft, view.units);
  shown.span = std::to_string(draft.lookaheadHours);
  bool const isWithin = kindOf(draft.conditionType).isWithin();
  bool const isOfStation = kindOf(draft.conditionType).isOfStation();
  shown.hasSpan = draft.conditionType != Type::earthquake && !isWithin && !isOfStation;
  shown.hasHour = !isWithin;
  shown.hour = std::to_string(draft.checkHour);
  if (draft.locationID) shown.place = draft.locationID->text();
  shown.description = ruleDescription(draft, view.units, view.texts);
  shown.schedule = ruleSchedule(draft, view.texts) + "; " + placeName(draft, places, view);
  shown.fault = faultText(draft, places, view);
  return shown;
}

std::vector<WeekdayView> weekdayViews(CustomNotification const& draft, ViewContext const& view) {
  std::vector<WeekdayView> shown;
  constexpr std::size_t kDays = enumNames<DayOfWeek>.size();
  for (std::size_t i = 0; i < kDays; ++i) {
    auto const day = static_cast<DayOfWeek>((i + 1) % kDays);
    shown.push_back(
        {std::string(enumName(day)), view.text(weekdayKey(day)), draft.scheduledDays.contains(day)});
  }
  return shown;
}

std::vector<OptionView> kindOptions(ViewContext const& view) {
  std::vector<OptionView> options;
  options.reserve(enumNames<Type>.size());
  for (std::string_view const name : enumNames<Type>) {
    options.push_back({std::string(name), view.text("customnotif.type." + std::string(name))});
  }
  return options;
}

std::vector<OptionView> comparisonOptions(CustomNotification const& draft, ViewContext const& view) {
  std::vector<OptionView> options;
  for (Operator const comparison : comparisonsOf(draft.conditionType)) {
    std::string const name(enumName(comparison));
    bool const isWithin = kindOf(draft.conditionType).isWithin();
    options.push_back({name, view.text("desktop.rules.op." + (isWithin ? "within" : name))});
  }
  return options;
}

std::vector<OptionView> spanOptions(CustomNotification const& draft, ViewContext const& view) {
  std::vector<int> spans(kSpans.begin(), kSpans.end());
  // One that was set elsewhere stays to be chosen.
  auto const at = std::ranges::lower_bound(spans, draft.lookaheadHours);
  if (at == spans.end() || *at != draft.lookaheadHours) spans.insert(at, draft.lookaheadHours);
  std::vector<OptionView> options;
  options.reserve(spans.size());
  for (int const hours : spans) options.push_back({std::to_string(hours), spanText(hours, view)});
  return options;
}

std::vector<OptionView> checkHourOptions(ViewContext const& view) {
  std::vector<OptionView> options = hourOptions(view);
  options.insert(options.begin(), {std::to_string(CustomNotification::kImmediately),
                                   view.text("desktop.rules.hour.immediately")});
  return options;
}

std::vector<OptionView> rulePlaceOptions(CustomNotification const& draft, PlaceList const& places,
                                         ViewContext const& view) {
  std::vector<OptionView> options{{"", view.text("customnotif.place.selected")}};
  for (SavedPlace const& place : places.places) options.push_back({place.id.text(), place.name});
  if (!isPlaceKnown(draft, places)) {
    options.push_back({draft.locationID->text(), view.text("customnotif.place.deleted")});
  }
  return options;
}

}  // namespace nimbara
