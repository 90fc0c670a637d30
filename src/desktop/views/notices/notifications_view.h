// The page of notifications as display values: who notifies, the rules in groups with their settings, what is
// muted, and the log. Pure.
#pragma once

#include "app/state/notifications_state.h"
#include "desktop/views/view_context.h"
#include "desktop/views/view_fields.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

struct NotificationsView {
  std::string notifier;  ///< who notifies now, a sentence
  std::string trouble;   ///< why nothing can be shown, or what went wrong; empty when all is well
  std::string test;      ///< what became of the test
  std::string pause;     ///< until when nothing gets through; empty when it does
  bool isPaused = false;
  std::string logNote;  ///< what stands in place of an empty log
};

template <>
inline constexpr auto viewFields<NotificationsView> = FieldList{
    viewField("notifier", &NotificationsView::notifier), viewField("trouble", &NotificationsView::trouble),
    viewField("test", &NotificationsView::test),         viewField("pause", &NotificationsView::pause),
    viewField("isPaused", &NotificationsView::isPaused), viewField("logNote", &NotificationsView::logNote)};

/// A group of rules: "danger", "weather" …
struct RuleGroupView {
  std::string name;
  std::string title;
  std::string summary;  ///< "3 of 8 on"
};

template <>
inline constexpr auto viewFields<RuleGroupView> =
    FieldList{viewField("name", &RuleGroupView::name), viewField("title", &RuleGroupView::title),
              viewField("summary", &RuleGroupView::summary)};

/// A setting as a row with its control. Numbers are in the user's unit.
struct NotificationSettingView {
  std::string key;
  std::string control;  ///< "switch", "number", "level" or "hour"
  std::string title;
  std::string explanation;
  bool isOn = false;
  bool isDetail = false;  ///< of the switch above it
  bool isEnabled = true;  ///< that switch is on
  double value = 0;
  double from = 0;
  double to = 0;
  double step = 1;
  double decimals = 0;
  std::string unit;
  std::string choice;  ///< of a level or an hour
};

template <>
inline constexpr auto viewFields<NotificationSettingView> =
    FieldList{viewField("key", &NotificationSettingView::key),
              viewField("control", &NotificationSettingView::control),
              viewField("title", &NotificationSettingView::title),
              viewField("explanation", &NotificationSettingView::explanation),
              viewField("isOn", &NotificationSettingView::isOn),
              viewField("isDetail", &NotificationSettingView::isDetail),
              viewField("isEnabled", &NotificationSettingView::isEnabled),
              viewField("value", &NotificationSettingView::value),
              viewField("from", &NotificationSettingView::from),
              viewField("to", &NotificationSettingView::to),
              viewField("step", &NotificationSettingView::step),
              viewField("decimals", &NotificationSettingView::decimals),
              viewField("unit", &NotificationSettingView::unit),
              viewField("choice", &NotificationSettingView::choice)};

/// One of a list to choose from.
struct OptionView {
  std::string value;
  std::string text;
};

template <>
inline constexpr auto viewFields<OptionView> =
    FieldList{viewField("value", &OptionView::value), viewField("text", &OptionView::text)};

struct MuteView {
  std::string kind;
  std::string title;
  std::string until;
};

template <>
inline constexpr auto viewFields<MuteView> =
    FieldList{viewField("kind", &MuteView::kind), viewField("title", &MuteView::title),
              viewField("until", &MuteView::until)};

struct LogView {
  std::string key;  ///< tells lines apart
  std::string when;
  std::string title;
  std::string body;
  std::string place;
  std::string reason;
  bool wasTold = false;
  std::string kind;  ///< what a mute names
  std::string kindTitle;
  std::string mute;      ///< "Mute “Heavy rain”"
  std::string muted;     ///< until when its like is muted; empty when it is sent
  std::string mutes;     ///< what holds it back, kinds by "+"
  std::string sentence;  ///< all of it, for those who listen
};

template <>
inline constexpr auto viewFields<LogView> = FieldList{viewField("key", &LogView::key),
                                                      viewField("when", &LogView::when),
                                                      viewField("title", &LogView::title),
                                                      viewField("body", &LogView::body),
                                                      viewField("place", &LogView::place),
                                                      viewField("reason", &LogView::reason),
                                                      viewField("wasTold", &LogView::wasTold),
                                                      viewField("kind", &LogView::kind),
                                                      viewField("kindTitle", &LogView::kindTitle),
                                                      viewField("mute", &LogView::mute),
                                                      viewField("muted", &LogView::muted),
                                                      viewField("mutes", &LogView::mutes),
                                                      viewField("sentence", &LogView::sentence)};

/// A way to mute what is looked at elsewhere.
struct MuteOffer {
  std::string text;   ///< "Mute “Official warnings: wind” until tomorrow", or to end that
  std::string mutes;  ///< what holds its like back, kinds by "+"; empty when it is sent
};

/// `kind` as in the log.
MuteOffer muteOffer(std::string kind, NotificationsState const& state, ViewContext const& view);

/// How long something is muted or nothing gets through.
enum class MuteSpan { hour, tomorrow, forever };
template <>
inline constexpr auto enumNames<MuteSpan> = std::to_array<std::string_view>({"hour", "tomorrow", "forever"});
static_assert(enumNamesComplete(MuteSpan::forever));

/// Which lines of the log are shown.
enum class LogFilter { all, told, held };
template <>
inline constexpr auto enumNames<LogFilter> = std::to_array<std::string_view>({"all", "told", "held"});
static_assert(enumNamesComplete(LogFilter::held));

NotificationsView notificationsView(NotificationsState const& state, ViewContext const& view);

std::vector<RuleGroupView> ruleGroupViews(NotificationsState const& state, ViewContext const& view);
/// The rows of a group by its name; none for another name.
std::vector<NotificationSettingView> settingRowViews(std::string_view group, NotificationsState const& state,
                                                     ViewContext const& view);
/// The names of the groups, in their order.
std::vector<std::string_view> ruleGroupNames();

std::vector<OptionView> levelOptions(ViewContext const& view);
std::vector<OptionView> hourOptions(ViewContext const& view);
/// All that can be muted as a whole.
std::vector<OptionView> muteOptions(ViewContext const& view);

/// What the user typed as the setting holds it: the metric value of a number in the user's unit.
std::optional<SettingValue> settingFromShown(std::string_view key, double shown, Units const& units);

std::vector<MuteView> muteViews(NotificationsState const& state, ViewContext const& view);
/// "Until tomorrow" ends with the night: at `morning` o'clock. Nothing forever.
std::optional<Instant> endOf(MuteSpan span, Instant now, Calendar const& calendar, int morning);

/// Newest first.
std::vector<LogView> logViews(NotificationsState const& state, LogFilter filter, ViewContext const& view);

}  // namespace nimbara
