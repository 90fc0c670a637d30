// The user's own rules as display values, and the one that is being written: what may be chosen for it, what
// it says in words, what is wrong with it. Pure.
#pragma once

#include "app/places/places.h"
#include "desktop/views/notices/notifications_view.h"

#include <string>
#include <vector>

namespace nimbara {

struct RuleView {
  std::string id;
  std::string title;
  std::string description;
  std::string schedule;  ///< when and where
  bool isOn = false;
  bool isOrphan = false;  ///< its place was deleted
};

template <>
inline constexpr auto viewFields<RuleView> = FieldList{viewField("id", &RuleView::id),
                                                       viewField("title", &RuleView::title),
                                                       viewField("description", &RuleView::description),
                                                       viewField("schedule", &RuleView::schedule),
                                                       viewField("isOn", &RuleView::isOn),
                                                       viewField("isOrphan", &RuleView::isOrphan)};

/// The rule that is being written, in the user's units.
struct DraftView {
  std::string id;
  std::string title;
  std::string kind;
  std::string comparison;
  bool hasThreshold = false;
  double threshold = 0;
  double from = 0;
  double to = 0;
  double step = 1;
  double decimals = 0;
  std::string unit;
  std::string span;  ///< hours that it looks ahead
  bool hasSpan = false;
  bool hasHour = true;
  std::string hour;  ///< "-1": as soon as it is so
  std::string place;
  std::string description;
  std::string schedule;
  std::string fault;  ///< a sentence; empty when it can be saved
};

template <>
inline constexpr auto viewFields<DraftView> = FieldList{viewField("id", &DraftView::id),
                                                        viewField("title", &DraftView::title),
                                                        viewField("kind", &DraftView::kind),
                                                        viewField("comparison", &DraftView::comparison),
                                                        viewField("hasThreshold", &DraftView::hasThreshold),
                                                        viewField("threshold", &DraftView::threshold),
                                                        viewField("from", &DraftView::from),
                                                        viewField("to", &DraftView::to),
                                                        viewField("step", &DraftView::step),
                                                        viewField("decimals", &DraftView::decimals),
                                                        viewField("unit", &DraftView::unit),
                                                        viewField("span", &DraftView::span),
                                                        viewField("hasSpan", &DraftView::hasSpan),
                                                        viewField("hasHour", &DraftView::hasHour),
                                                        viewField("hour", &DraftView::hour),
                                                        viewField("place", &DraftView::place),
                                                        viewField("description", &DraftView::description),
                                                        viewField("schedule", &DraftView::schedule),
                                                        viewField("fault", &DraftView::fault)};

struct WeekdayView {
  std::string name;
  std::string dayName;  ///< "Mon"
  bool isOn = false;
};

template <>
inline constexpr auto viewFields<WeekdayView> =
    FieldList{viewField("name", &WeekdayView::name), viewField("dayName", &WeekdayView::dayName),
              viewField("isOn", &WeekdayView::isOn)};

std::vector<RuleView> ruleViews(NotificationsState const& state, PlaceList const& places,
                                ViewContext const& view);

/// A new rule to begin with.
CustomNotification newDraft(Units const& units);
/// The rule with another subject, and with a comparison and limit that suit it: a round one in the user's
/// unit.
CustomNotification withKind(CustomNotification draft, ConditionType kind, Units const& units);
/// A limit in the user's unit.
CustomNotification withThreshold(CustomNotification draft, double shown, Units const& units);

DraftView draftView(CustomNotification const& draft, PlaceList const& places, ViewContext const& view);
/// Monday first.
std::vector<WeekdayView> weekdayViews(CustomNotification const& draft, ViewContext const& view);

std::vector<OptionView> kindOptions(ViewContext const& view);
/// What the draft's subject can be compared by.
std::vector<OptionView> comparisonOptions(CustomNotification const& draft, ViewContext const& view);
std::vector<OptionView> spanOptions(CustomNotification const& draft, ViewContext const& view);
std::vector<OptionView> checkHourOptions(ViewContext const& view);
/// The selected place, the saved ones, and the draft's own where that was deleted.
std::vector<OptionView> rulePlaceOptions(CustomNotification const& draft, PlaceList const& places,
                                         ViewContext const& view);

}  // namespace nimbara
