// The page of notifications for the window: rules in groups, mutes, the user's own rules with the one that is
// being written, and the log. Lives on the window's thread, owned by the window's model; makes its rows only
// while the page is open. Decides nothing: it passes commands on.
#pragma once

#include "app/state/engine_snapshot.h"
#include "desktop/views/notices/rules_view.h"
#include "desktop/window/models/view_models.h"
#include "desktop/window/models/window_actions.h"

#include <QMap>
#include <QObject>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace nimbara {

class NotificationsModel : public QObject {
  Q_OBJECT
  Q_PROPERTY(nimbara::RecordModel* now READ now CONSTANT)
  Q_PROPERTY(nimbara::RecordModel* words READ words CONSTANT)
  Q_PROPERTY(nimbara::RecordModel* draft READ draft CONSTANT)
  Q_PROPERTY(nimbara::RecordListModel* groups READ groups CONSTANT)
  Q_PROPERTY(nimbara::RecordListModel* levels READ levels CONSTANT)
  Q_PROPERTY(nimbara::RecordListModel* hours READ hours CONSTANT)
  Q_PROPERTY(nimbara::RecordListModel* mutes READ mutes CONSTANT)
  Q_PROPERTY(nimbara::RecordListModel* kindsToMute READ kindsToMute CONSTANT)
  Q_PROPERTY(nimbara::RecordListModel* rules READ rules CONSTANT)
  Q_PROPERTY(nimbara::RecordListModel* log READ log CONSTANT)
  Q_PROPERTY(nimbara::RecordListModel* kinds READ kinds CONSTANT)
  Q_PROPERTY(nimbara::RecordListModel* comparisons READ comparisons CONSTANT)
  Q_PROPERTY(nimbara::RecordListModel* spans READ spans CONSTANT)
  Q_PROPERTY(nimbara::RecordListModel* checkHours READ checkHours CONSTANT)
  Q_PROPERTY(nimbara::RecordListModel* rulePlaces READ rulePlaces CONSTANT)
  Q_PROPERTY(nimbara::RecordListModel* days READ days CONSTANT)
  Q_PROPERTY(bool isOpen READ isOpen WRITE setOpen NOTIFY opened)
  Q_PROPERTY(bool isEditing READ isEditing NOTIFY draftChanged)
  Q_PROPERTY(bool isNewRule READ isNewRule NOTIFY draftChanged)
  Q_PROPERTY(bool isTrying READ isTrying NOTIFY draftChanged)
  Q_PROPERTY(bool trialRings READ trialRings NOTIFY draftChanged)
  Q_PROPERTY(QString trial READ trial NOTIFY draftChanged)
  Q_PROPERTY(QString logFilter READ logFilter WRITE setLogFilter NOTIFY logChanged)
  Q_PROPERTY(int olderLines READ olderLines NOTIFY logChanged)

 public:
  NotificationsModel(NotificationActions& actions, QObject* parent);

  void show(EngineSnapshot const& snapshot, ViewContext const& view);
  void showTrial(TrialAnswer const& answer);

  RecordModel* now() { return now_; }
  /// Written when the page first reads them.
  RecordModel* words();
  RecordModel* draft() { return draftRow_; }
  RecordListModel* groups() { return groups_; }
  RecordListModel* levels() { return levels_; }
  RecordListModel* hours() { return hours_; }
  RecordListModel* mutes() { return mutes_; }
  RecordListModel* kindsToMute() { return kindsToMute_; }
  RecordListModel* rules() { return rules_; }
  RecordListModel* log() { return log_; }
  RecordListModel* kinds() { return kinds_; }
  RecordListModel* comparisons() { return comparisons_; }
  RecordListModel* spans() { return spans_; }
  RecordListModel* checkHours() { return checkHours_; }
  RecordListModel* rulePlaces() { return rulePlaces_; }
  RecordListModel* days() { return days_; }
  bool isOpen() const { return isOpen_; }
  void setOpen(bool isOpen);
  bool isEditing() const { return draft_.has_value(); }
  bool isNewRule() const;
  bool isTrying() const { return isTrying_; }
  bool trialRings() const { return trial_ && trial_->rings; }
  QString trial() const;
  QString logFilter() const { return viewName(enumName(filter_)); }
  void setLogFilter(QString const& name);
  /// Lines of the log that are not shown.
  int olderLines() const { return olderLines_; }

  /// The rows of a group; they are made when they are first asked for.
  Q_INVOKABLE nimbara::RecordListModel* rows(QString const& group);

  Q_INVOKABLE void setSwitch(QString const& key, bool isOn);
  /// In the user's unit.
  Q_INVOKABLE void setNumber(QString const& key, double shown);
  Q_INVOKABLE void setLevel(QString const& key, QString const& level);
  Q_INVOKABLE void setHour(QString const& key, QString const& hour);
  /// `span`: "hour", "tomorrow" or "forever".
  Q_INVOKABLE void mute(QString const& kinds, QString const& span);
  Q_INVOKABLE void unmute(QString const& kinds);
  /// The like, or "" to end the pause.
  Q_INVOKABLE void pause(QString const& span);
  Q_INVOKABLE void postTest();
  Q_INVOKABLE void showMoreLog();

  Q_INVOKABLE void addRule();
  Q_INVOKABLE void editRule(QString const& id);
  Q_INVOKABLE void removeRule(QString const& id);
  Q_INVOKABLE void enableRule(QString const& id, bool isEnabled);
  Q_INVOKABLE void setTitle(QString const& title);
  Q_INVOKABLE void setKind(QString const& kind);
  Q_INVOKABLE void setComparison(QString const& comparison);
  Q_INVOKABLE void setThreshold(double shown);
  Q_INVOKABLE void setSpan(QString const& hours);
  Q_INVOKABLE void setCheckHour(QString const& hour);
  Q_INVOKABLE void setPlace(QString const& id);
  Q_INVOKABLE void setDay(QString const& day, bool isOn);
  Q_INVOKABLE void tryDraft();
  Q_INVOKABLE void saveDraft();
  Q_INVOKABLE void dropDraft();

 Q_SIGNALS:
  void opened();
  void draftChanged();
  void logChanged();

 private:
  /// What the rows were made of last.
  struct Shown {
    std::shared_ptr<NotificationsState const> state = std::make_shared<NotificationsState>();
    PlaceList places;
    std::optional<ViewContext> view;
  };

  void showAll();
  void showOptions();
  void showLog();
  void showDraft();
  void edit(CustomNotification draft);
  Units units() const;
  template <class Change>
  void change(Change apply);
  CustomNotification const* ruleOf(QString const& id) const;
  std::optional<Instant> endOf(QString const& span) const;

  NotificationActions& actions_;
  Shown shown_;
  bool isOpen_ = false;
  LogFilter filter_ = LogFilter::all;
  int mostLines_ = 0;
  int olderLines_ = 0;
  std::optional<CustomNotification> draft_;
  std::optional<TrialAnswer> trial_;
  bool isTrying_ = false;
  RecordModel* now_;
  RecordModel* words_;
  RecordModel* draftRow_;
  RecordListModel* groups_;
  RecordListModel* levels_;
  RecordListModel* hours_;
  RecordListModel* mutes_;
  RecordListModel* kindsToMute_;
  RecordListModel* rules_;
  RecordListModel* log_;
  RecordListModel* kinds_;
  RecordListModel* comparisons_;
  RecordListModel* spans_;
  RecordListModel* checkHours_;
  RecordListModel* rulePlaces_;
  RecordListModel* days_;
  QMap<QString, RecordListModel*> rows_;
};

}  // namespace nimbara
