#include "desktop/window/models/notifications_model.h"

#include "base/text/number.h"
#include "base/text/text.h"
#include "desktop/views/notices/notifications_view.h"
#include "desktop/window/words.h"
#include "notifications/rules/rule_settings.h"

#include <algorithm>

namespace nimbara {

namespace {

constexpr int kLogPage = 20;

constexpr WordRow kWords[] = {
    {"title", "desktop.page.notifications"},
    {"testButton", "desktop.notifications.test"},
    {"groups", "desktop.notifications.groups"},
    {"pauseTitle", "desktop.notifications.pause"},
    {"pauseHint", "desktop.notifications.pause.hint"},
    {"resume", "desktop.notifications.resume"},
    {"forAnHour", "desktop.notifications.span.hour"},
    {"untilTomorrow", "desktop.notifications.span.tomorrow"},
    {"forEver", "desktop.notifications.span.forever"},
    {"mutes", "desktop.notifications.mutes"},
    {"mutesHint", "desktop.notifications.mutes.hint"},
    {"noMutes", "desktop.notifications.mutes.none"},
    {"mute", "desktop.notifications.mute"},
    {"unmute", "desktop.notifications.unmute"},
    {"whatToMute", "desktop.notifications.mute.what"},
    {"howLong", "desktop.notifications.mute.howLong"},
    {"rules", "desktop.rules"},
    {"rulesHint", "desktop.rules.hint"},
    {"noRules", "desktop.rules.none"},
    {"addRule", "desktop.rules.add"},
    {"newRule", "desktop.rules.new"},
    {"editRule", "desktop.rules.edit"},
    {"removeRule", "desktop.rules.remove"},
    {"ruleTitle", "desktop.rules.title"},
    {"ruleTitleHint", "desktop.rules.title.hint"},
    {"ruleKind", "desktop.rules.kind"},
    {"ruleComparison", "desktop.rules.comparison"},
    {"ruleThreshold", "desktop.rules.threshold"},
    {"ruleSpan", "desktop.rules.span"},
    {"ruleHour", "desktop.rules.hour"},
    {"ruleDays", "desktop.rules.days"},
    {"rulePlace", "desktop.rules.place"},
    {"tryRule", "desktop.rules.try"},
    {"trying", "desktop.rules.trying"},
    {"save", "desktop.rules.save"},
    {"cancel", "desktop.rules.cancel"},
    {"log", "desktop.log"},
    {"logHint", "desktop.log.hint"},
    {"logAll", "desktop.log.all"},
    {"logTold", "desktop.log.told"},
    {"logHeld", "desktop.log.held"},
    {"logMore", "desktop.log.more"},
    {"logNone", "desktop.log.none"},
    {"logShow", "desktop.log.show"},
};

template <NamedEnum E>
std::optional<E> named(QString const& name) {
  return enumFromName<E>(name.toStdString());
}

std::optional<int> numberOf(QString const& text) {
  bool isNumber = false;
  int const number = text.toInt(&isNumber);
  return isNumber ? std::optional(number) : std::nullopt;
}

}  // namespace

NotificationsModel::NotificationsModel(NotificationActions& actions, QObject* parent)
    : QObject(parent),
      actions_(actions),
      mostLines_(kLogPage),
      now_(new RecordModel(this)),
      words_(new RecordModel(this)),
      draftRow_(new RecordModel(this)),
      groups_(new RecordListModel(this)),
      levels_(new RecordListModel(this)),
      hours_(new RecordListModel(this)),
      mutes_(new RecordListModel(this)),
      kindsToMute_(new RecordListModel(this)),
      rules_(new RecordListModel(this)),
      log_(new RecordListModel(this)),
      kinds_(new RecordListModel(this)),
      comparisons_(new RecordListModel(this)),
      spans_(new RecordListModel(this)),
      checkHours_(new RecordListModel(this)),
      rulePlaces_(new RecordListModel(this)),
      days_(new RecordListModel(this)) {
  now_->show(NotificationsView());
  draftRow_->show(DraftView());
}

void NotificationsModel::show(EngineSnapshot const& snapshot, ViewContext const& view) {
  shown_.state = snapshot.notifications;
  shown_.places = snapshot.places;
  shown_.view.emplace(view);
  if (isOpen_) showAll();
}

RecordModel* NotificationsModel::words() {
  if (words_->isEmpty() && shown_.view) showWords(*words_, kWords, shown_.view->texts);
  return words_;
}

void NotificationsModel::setOpen(bool isOpen) {
  if (isOpen == isOpen_) return;
  isOpen_ = isOpen;
  if (isOpen) {
    actions_.lookAtDesktop();
    showAll();
  }
  Q_EMIT opened();
}

void NotificationsModel::showAll() {
  if (!shown_.view) return;
  ViewContext const& view = *shown_.view;
  NotificationsState const& state = *shown_.state;
  showWords(*words_, kWords, view.texts);
  showOptions();
  now_->show(notificationsView(state, view));
  groups_->show(ruleGroupViews(state, view));
  for (auto [group, model] : rows_.asKeyValueRange()) {
    model->show(settingRowViews(group.toStdString(), state, view));
  }
  mutes_->show(muteViews(state, view));
  rules_->show(ruleViews(state, shown_.places, view));
  showLog();
  showDraft();
}

/// They depend on the language alone.
void NotificationsModel::showOptions() {
  ViewContext const& view = *shown_.view;
  levels_->show(levelOptions(view));
  hours_->show(hourOptions(view));
  kindsToMute_->show(muteOptions(view));
  kinds_->show(kindOptions(view));
  checkHours_->show(checkHourOptions(view));
}

void NotificationsModel::showLog() {
  if (!shown_.view) return;
  auto lines = logViews(*shown_.state, filter_, *shown_.view);
  auto const shown = std::min(static_cast<int>(lines.size()), mostLines_);
  olderLines_ = static_cast<int>(lines.size()) - shown;
  lines.resize(static_cast<std::size_t>(shown));
  log_->show(lines);
  Q_EMIT logChanged();
}

RecordListModel* NotificationsModel::rows(QString const& group) {
  RecordListModel*& model = rows_[group];
  if (model == nullptr) {
    model = new RecordListModel(this);
    if (shown_.view) model->show(settingRowViews(group.toStdString(), *shown_.state, *shown_.view));
  }
  return model;
}

void NotificationsModel::setSwitch(QString const& key, bool isOn) {
  actions_.set(key.toStdString(), SettingValue(isOn));
}

void NotificationsModel::setNumber(QString const& key, double shown) {
  if (!shown_.view) return;
  auto const value = settingFromShown(key.toStdString(), shown, shown_.view->units);
  if (value) actions_.set(key.toStdString(), *value);
}

void NotificationsModel::setLevel(QString const& key, QString const& level) {
  actions_.set(key.toStdString(), SettingValue(level.toStdString()));
}

void NotificationsModel::setHour(QString const& key, QString const& hour) {
  if (auto const number = numberOf(hour))
    actions_.set(key.toStdString(), SettingValue(std::int64_t{*number}));
}

std::optional<Instant> NotificationsModel::endOf(QString const& span) const {
  auto const wanted = named<MuteSpan>(span);
  if (!wanted || !shown_.view) return std::nullopt;
  ViewContext const& view = *shown_.view;
  int const morning = RuleSettings::of(shown_.state->settings).quiet.until;
  return nimbara::endOf(*wanted, view.now, view.fallback, morning);
}

void NotificationsModel::mute(QString const& kinds, QString const& span) {
  if (named<MuteSpan>(span)) actions_.mute(kinds.toStdString(), endOf(span));
}

void NotificationsModel::unmute(QString const& kinds) {
  actions_.unmute(kinds.toStdString());
}

void NotificationsModel::pause(QString const& span) {
  actions_.pause(endOf(span));
}

void NotificationsModel::postTest() {
  actions_.postTest();
}

void NotificationsModel::setLogFilter(QString const& name) {
  auto const filter = named<LogFilter>(name);
  if (!filter || *filter == filter_) return;
  filter_ = *filter;
  mostLines_ = kLogPage;
  showLog();
}

void NotificationsModel::showMoreLog() {
  mostLines_ += 2 * kLogPage;
  showLog();
}

CustomNotification const* NotificationsModel::ruleOf(QString const& id) const {
  auto const& rules = shown_.state->rules.rules;
  auto const wanted = Uuid::parse(id.toStdString());
  auto const found = std::ranges::find_if(
      rules, [&](CustomNotification const& rule) { return wanted && rule.id == *wanted; });
  return found == rules.end() ? nullptr : &*found;
}

bool NotificationsModel::isNewRule() const {
  return draft_ && ruleOf(QString::fromStdString(draft_->id.text())) == nullptr;
}

QString NotificationsModel::trial() const {
  return trial_ ? QString::fromStdString(trial_->text) : QString();
}

void NotificationsModel::edit(CustomNotification draft) {
  draft_ = std::move(draft);
  trial_.reset();
  isTrying_ = false;
  showDraft();
  Q_EMIT draftChanged();
}

void NotificationsModel::showDraft() {
  if (!draft_ || !shown_.view) return;
  ViewContext const& view = *shown_.view;
  comparisons_->show(comparisonOptions(*draft_, view));
  spans_->show(spanOptions(*draft_, view));
  days_->show(weekdayViews(*draft_, view));
  rulePlaces_->show(rulePlaceOptions(*draft_, shown_.places, view));
  draftRow_->show(draftView(*draft_, shown_.places, view));
}

template <class Change>
void NotificationsModel::change(Change apply) {
  if (!draft_) return;
  CustomNotification draft = *draft_;
  apply(draft);
  edit(std::move(draft));
}

Units NotificationsModel::units() const {
  return shown_.view ? shown_.view->units : Units::metric();
}

void NotificationsModel::addRule() {
  edit(newDraft(units()));
}

void NotificationsModel::editRule(QString const& id) {
  if (CustomNotification const* const rule = ruleOf(id)) edit(*rule);
}

void NotificationsModel::removeRule(QString const& id) {
  if (CustomNotification const* const rule = ruleOf(id)) actions_.removeRule(rule->id);
}

void NotificationsModel::enableRule(QString const& id, bool isEnabled) {
  if (CustomNotification const* const rule = ruleOf(id)) actions_.enableRule(rule->id, isEnabled);
}

void NotificationsModel::setTitle(QString const& title) {
  change([&](CustomNotification& draft) { draft.title = title.toStdString(); });
}

void NotificationsModel::setKind(QString const& kind) {
  if (auto const wanted = named<ConditionType>(kind)) {
    change([&](CustomNotification& draft) { draft = withKind(draft, *wanted, units()); });
  }
}

void NotificationsModel::setComparison(QString const& comparison) {
  if (auto const wanted = named<ConditionOperator>(comparison)) {
    change([&](CustomNotification& draft) { draft.conditionOperator = *wanted; });
  }
}

void NotificationsModel::setThreshold(double shown) {
  if (!shown_.view) return;
  change([&](CustomNotification& draft) { draft = withThreshold(draft, shown, shown_.view->units); });
}

void NotificationsModel::setSpan(QString const& hours) {
  if (auto const number = numberOf(hours)) {
    change([&](CustomNotification& draft) { draft.lookaheadHours = *number; });
  }
}

void NotificationsModel::setCheckHour(QString const& hour) {
  if (auto const number = numberOf(hour)) {
    change([&](CustomNotification& draft) { draft.checkHour = *number; });
  }
}

void NotificationsModel::setPlace(QString const& id) {
  change([&](CustomNotification& draft) { draft.locationID = Uuid::parse(id.toStdString()); });
}

void NotificationsModel::setDay(QString const& day, bool isOn) {
  auto const wanted = named<DayOfWeek>(day);
  if (!wanted) return;
  change([&](CustomNotification& draft) {
    isOn ? draft.scheduledDays.insert(*wanted) : draft.scheduledDays.erase(*wanted);
  });
}

void NotificationsModel::tryDraft() {
  if (!draft_) return;
  isTrying_ = true;
  Q_EMIT draftChanged();
  actions_.tryRule(*draft_,
                   answerTo<TrialAnswer>(this, [](NotificationsModel& model, TrialAnswer const& answer) {
                     model.showTrial(answer);
                   }));
}

/// An answer about a draft that has changed since is skipped.
void NotificationsModel::showTrial(TrialAnswer const& answer) {
  if (!draft_ || !isTrying_ || answer.rule != draft_->id) return;
  isTrying_ = false;
  trial_ = answer;
  Q_EMIT draftChanged();
}

void NotificationsModel::saveDraft() {
  if (!draft_ || !draftRow_->value(QStringLiteral("fault")).toString().isEmpty()) return;
  CustomNotification rule = *draft_;
  rule.title = trimmed(rule.title);
  actions_.saveRule(std::move(rule));
  dropDraft();
}

void NotificationsModel::dropDraft() {
  draft_.reset();
  trial_.reset();
  isTrying_ = false;
  Q_EMIT draftChanged();
}

}  // namespace nimbara
