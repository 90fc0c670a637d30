#include "desktop/views/notices/notifications_view.h"

#include "base/words/list_text.h"
#include "base/words/time_words.h"
#include "desktop/views/notices/kind_titles.h"
#include "desktop/views/notices/notification_rows.h"
#include "desktop/views/problem_text.h"
#include "notifications/catalogue.h"
#include "notifications/custom/custom_rule_text.h"
#include "notifications/engine/hold_back.h"
#include "notifications/engine/pass_plan.h"
#include "notifications/log/reason_text.h"
#include "notifications/rules/rule_settings.h"

#include <algorithm>
#include <cmath>
#include <ranges>

namespace nimbara {

namespace {

using Control = NotificationRow::Control;
using Row = NotificationRow;

constexpr std::string_view kControlNames[] = {"switch", "number", "level", "hour"};

std::string moment(Instant instant, ViewContext const& view) {
  return TimeWords(view.texts, view.fallback).moment(instant, view.now);
}

std::string notifierText(NotificationsState const& state, ViewContext const& view) {
  std::string_view const who = state.isStandIn            ? "standIn"
                               : state.isOurs             ? "window"
                               : state.holder == "watch"  ? "watch"
                               : state.holder == "window" ? "otherWindow"
                                                          : "other";
  return view.text("desktop.notifications.by." + std::string(who));
}

std::string testText(NotificationsState const& state, ViewContext const& view) {
  if (state.isStandIn && state.testsTold > 0) return view.text("desktop.notifications.test.standIn");
  if (!state.testNote.empty()) return view.texts.format("desktop.notifications.test.failed", state.testNote);
  return state.testsTold > 0 ? view.text("desktop.notifications.test.done") : std::string();
}

std::string troubleText(NotificationsState const& state, ViewContext const& view) {
  std::string text;
  if (state.status == AuthorizationStatus::denied) text = view.text("desktop.notifications.denied");
  if (state.problem) text += (text.empty() ? "" : " ") + storeText(state.problem, view);
  return text;
}

bool isToggle(Row const& row) {
  return row.control == Control::toggle;
}

void setNumber(NotificationSettingView& shown, Row const& row, SettingDefinition const& definition,
               SettingValue const& value, Units const& units) {
  ConditionScale const scale = conditionScale(*row.unit, units);
  bool const isWhole = std::holds_alternative<std::int64_t>(value);
  double const metric =
      isWhole ? static_cast<double>(std::get<std::int64_t>(value)) : std::get<double>(value);
  double const most = row.most > 0 ? row.most : definition.maximum;
  // Whole metric numbers are stored: a decimal of another unit would say more than is known.
  shown.decimals = isWhole ? 0 : scale.decimals;
  double const grain = std::pow(10, shown.decimals);
  shown.value = std::round(scale.shown(std::min(metric, most)) * grain) / grain;
  shown.from = std::ceil(scale.shown(definition.minimum));
  shown.to = std::floor(scale.shown(most));
  shown.step = row.step;
  shown.unit = scale.unit;
}

NotificationSettingView rowView(Row const& row, Settings const& settings, ViewContext const& view) {
  NotificationSettingView shown;
  shown.key = row.key;
  shown.control = kControlNames[static_cast<std::size_t>(row.control)];
  shown.title = settingTitle(row.key, view);
  shown.explanation = settingTitle(std::string(row.key) + ".hint", view);
  shown.isDetail = !row.of.empty();
  shown.isEnabled = row.of.empty() || settings.boolean(row.of);
  SettingValue const value = settings.value(row.key);
  switch (row.control) {
    case Control::toggle:
      shown.isOn = std::get<bool>(value);
      break;
    case Control::number:
      setNumber(shown, row, *settings.registry().find(row.key), value, view.units);
      break;
    case Control::level:
      shown.choice = std::get<std::string>(value);
      break;
    case Control::hour:
      shown.choice = std::to_string(std::get<std::int64_t>(value));
      break;
  }
  return shown;
}

NotificationGroup const* findGroup(std::string_view name) {
  auto const groups = notificationGroups();
  auto const found = std::ranges::find(groups, name, &NotificationGroup::name);
  return found == groups.end() ? nullptr : &*found;
}

// ---- Mutes

std::string endText(Mute const& mute, ViewContext const& view) {
  return mute.until ? view.texts.format("desktop.notifications.until", moment(*mute.until, view))
                    : view.text("desktop.notifications.forever");
}

/// A line of an earlier version knows its notification's identifier alone.
std::string kindOf(LoggedNotification const& line) {
  return line.kind.empty() ? kindOfIdentifier(line.identifier) : line.kind;
}

// ---- The log

bool wasTold(LoggedNotification const& line) {
  auto const outcome = enumFromName<RuleOutcome>(line.outcome);
  return outcome && isDelivery(*outcome);
}

/// What holds back the line's like at present: a mute of its kind, of the kind at a level, or of its rule.
void setMute(LogView& shown, std::vector<Mute> const& mutes, ViewContext const& view) {
  std::string const graded = shown.kind + ":";
  for (Mute const& mute : mutes) {
    bool const isOfIt =
        mute.kind == shown.kind || mute.kind.starts_with(graded) || mute.kind == stemOfKind(shown.kind);
    if (!isOfIt || !mute.holds(view.now)) continue;
    shown.mutes += (shown.mutes.empty() ? "" : "+") + mute.kind;
    shown.muted = view.texts.format("desktop.log.muted", endText(mute, view));
  }
}

LogView logView(LoggedNotification const& line, std::vector<Mute> const& mutes,
                NotificationsState const& state, ViewContext const& view) {
  LogView shown;
  shown.key = formatIso8601(line.time) + " " + line.identifier;
  shown.kind = kindOf(line);
  shown.kindTitle = kindTitle(shown.kind, state.rules, view);
  shown.mute = view.texts.format("desktop.log.mute", shown.kindTitle);
  setMute(shown, mutes, view);
  shown.when = moment(line.time, view);
  shown.title = line.title.empty() ? shown.kindTitle : line.title;
  shown.body = line.body;
  shown.place = line.place;
  shown.reason = reasonText(line, view.units, view.texts);
  shown.wasTold = wasTold(line);
  for (std::string const& part : {shown.when, shown.title, shown.place, shown.body, shown.reason}) {
    appendClause(shown.sentence, part, view.texts);
  }
  return shown;
}

}  // namespace

MuteOffer muteOffer(std::string kind, NotificationsState const& state, ViewContext const& view) {
  LogView like;
  like.kind = std::move(kind);
  setMute(like, RuleSettings::of(state.settings).mutes, view);
  std::string const title = kindTitle(like.kind, state.rules, view);
  if (like.mutes.empty()) return {view.texts.format("desktop.warning.mute", title), {}};
  return {view.text("desktop.notifications.unmute") + ": " + title, like.mutes};
}

NotificationsView notificationsView(NotificationsState const& state, ViewContext const& view) {
  NotificationsView shown;
  shown.notifier = notifierText(state, view);
  shown.trouble = troubleText(state, view);
  shown.test = testText(state, view);
  auto const until = RuleSettings::of(state.settings).snoozedUntil;
  shown.isPaused = until && view.now < *until;
  if (shown.isPaused) shown.pause = view.texts.format("desktop.notifications.paused", moment(*until, view));
  if (state.log.empty()) shown.logNote = view.text("notify.log.empty");
  return shown;
}

std::vector<std::string_view> ruleGroupNames() {
  std::vector<std::string_view> names;
  std::ranges::transform(notificationGroups(), std::back_inserter(names), &NotificationGroup::name);
  return names;
}

std::vector<RuleGroupView> ruleGroupViews(NotificationsState const& state, ViewContext const& view) {
  std::vector<RuleGroupView> shown;
  for (NotificationGroup const& group : notificationGroups()) {
    auto const isOn = [&](Row const& row) { return isToggle(row) && state.settings.boolean(row.key); };
    auto const on = static_cast<int>(std::ranges::count_if(group.rows, isOn));
    auto const all = static_cast<int>(std::ranges::count_if(group.rows, isToggle));
    std::string const name(group.name);
    shown.push_back({name, view.text("desktop.notifications.group." + name),
                     view.texts.format("desktop.notifications.on", on, all)});
  }
  return shown;
}

std::vector<NotificationSettingView> settingRowViews(std::string_view group, NotificationsState const& state,
                                                     ViewContext const& view) {
  std::vector<NotificationSettingView> shown;
  NotificationGroup const* const found = findGroup(group);
  if (found == nullptr) return shown;
  shown.reserve(found->rows.size());
  for (Row const& row : found->rows) shown.push_back(rowView(row, state.settings, view));
  return shown;
}

std::vector<OptionView> levelOptions(ViewContext const& view) {
  std::vector<OptionView> options;
  options.reserve(enumNames<NotificationLevel>.size());
  for (std::string_view const level : enumNames<NotificationLevel>) {
    options.push_back({std::string(level), view.text("desktop.notifications.level." + std::string(level))});
  }
  return options;
}

std::vector<OptionView> hourOptions(ViewContext const& view) {
  TimeWords const words(view.texts, Calendar::utc());
  std::vector<OptionView> options;
  options.reserve(24);
  for (int hour = 0; hour < 24; ++hour) {
    options.push_back({std::to_string(hour), words.hour(Instant(std::chrono::hours(hour)))});
  }
  return options;
}

std::vector<OptionView> muteOptions(ViewContext const& view) {
  std::vector<OptionView> options;
  for (Rule const& rule : ruleCatalogue()) {
    std::string const title = settingTitle(rule.setting, view);
    std::string const kind(withoutJoint(rule.stem));
    // Rules that one switch turns off are muted together.
    auto const same = std::ranges::find(options, title, &OptionView::text);
    if (same != options.end()) {
      same->value += "+" + kind;
    } else {
      options.push_back({kind, title});
    }
  }
  return options;
}

std::optional<SettingValue> settingFromShown(std::string_view key, double shown, Units const& units) {
  NotificationRow const* const row = findNotificationRow(key);
  SettingDefinition const* const definition = settingsRegistry().find(key);
  if (row == nullptr || definition == nullptr || !row->unit) return std::nullopt;
  double const metric = conditionScale(*row->unit, units).metric(shown);
  bool const isWhole = std::holds_alternative<std::int64_t>(definition->byDefault);
  double const most = row->most > 0 ? row->most : definition->maximum;
  double const bounded = std::clamp(isWhole ? std::round(metric) : metric, definition->minimum, most);
  if (isWhole) return SettingValue(static_cast<std::int64_t>(bounded));
  return SettingValue(bounded);
}

std::vector<MuteView> muteViews(NotificationsState const& state, ViewContext const& view) {
  std::vector<MuteView> shown;
  for (Mute const& mute : RuleSettings::of(state.settings).mutes) {
    if (!mute.holds(view.now)) continue;
    MuteView row{mute.kind, kindTitle(mute.kind, state.rules, view), endText(mute, view)};
    auto const same = std::ranges::find_if(
        shown, [&](MuteView const& other) { return other.title == row.title && other.until == row.until; });
    if (same != shown.end()) {
      same->kind += "+" + row.kind;
    } else {
      shown.push_back(std::move(row));
    }
  }
  return shown;
}

std::optional<Instant> endOf(MuteSpan span, Instant now, Calendar const& calendar, int morning) {
  switch (span) {
    case MuteSpan::hour:
      return now + std::chrono::hours(1);
    case MuteSpan::tomorrow:
      return calendar.instant(LocalTime(std::chrono::local_days(addDays(calendar.day(now), 1))) +
                              std::chrono::hours(morning));
    case MuteSpan::forever:
      break;
  }
  return std::nullopt;
}

std::vector<LogView> logViews(NotificationsState const& state, LogFilter filter, ViewContext const& view) {
  std::vector<Mute> const mutes = RuleSettings::of(state.settings).mutes;
  std::vector<LogView> shown;
  for (LoggedNotification const& line : state.log | std::views::reverse) {
    bool const isTold = wasTold(line);
    bool const isWanted = filter == LogFilter::all || isTold == (filter == LogFilter::told);
    if (isWanted) shown.push_back(logView(line, mutes, state, view));
  }
  return shown;
}

}  // namespace nimbara
