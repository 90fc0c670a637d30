// What the background service tells of its work: a line an event, for people or in JSON. Any thread may call.
#pragma once

#include "app/engine/app_state.h"
#include "app/services/in_use.h"
#include "base/time/calendar.h"
#include "cli/cli.h"
#include "notifications/engine/notification_manager.h"

#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

class WatchLog {
 public:
  /// `texts` gives those of now; lines begin with the moment in the calendar's time.
  WatchLog(Console& console, Clock const& clock, Calendar calendar, InUse<Texts const> texts, bool json)
      : console_(console),
        clock_(clock),
        calendar_(std::move(calendar)),
        texts_(std::move(texts)),
        json_(json) {}

  void refreshed(AppState::RefreshReport const& report);
  /// What a pass told, and what went wrong with it.
  void passed(PassReport const& report);
  void happened(std::string_view event);

 private:
  std::string lineOf(AppState::RefreshReport const& report, APIError const* failure) const;
  std::string jsonOf(AppState::RefreshReport const& report, APIError const* failure) const;
  std::string lineOf(Decision const& decision) const;
  std::string jsonOf(Decision const& decision) const;
  /// Problems not already reported for the previous pass.
  void wentWrong(std::vector<std::string> problems);
  std::string lineOf(std::string const& problem) const;
  std::string stamp() const;
  void write(std::string const& line);

  Console& console_;
  Clock const& clock_;
  Calendar calendar_;
  InUse<Texts const> texts_;
  bool json_;
  std::mutex mutex_;
  std::vector<std::string> lastProblems_;  ///< of the last pass; only passes touch it, one at a time
};

}  // namespace nimbara
