// The official warnings of a place, asked for beside a command's own question and waited for only so long. A
// list that was confirmed minutes ago is not asked for again: the services want it so.
#pragma once

#include "app/services/task_runner.h"
#include "feeds/alerts/coverage.h"
#include "platform/clock.h"

#include <chrono>
#include <future>
#include <optional>
#include <stop_token>
#include <vector>

namespace nimbara {

class OfficialLook {
 public:
  struct Answer {
    std::vector<WeatherAlert> alerts;  ///< live ones, most severe first
    std::vector<SourceCoverage> coverage;
  };

  /// Begins to ask. The service and the clock outlive the look.
  OfficialLook(GovAlertService& service, Clock const& clock, GovAlertPlace place);
  ~OfficialLook();

  /// What is known once the sources have answered, or `patience` is over, or `stop` was requested.
  Answer answer(std::chrono::milliseconds patience, std::stop_token const& stop);

 private:
  Answer answerOf(GovAlerts alerts) const;

  GovAlertService& service_;
  Clock const& clock_;
  GovAlertPlace place_;
  std::stop_source asking_;
  std::future<GovAlerts> answered_;
  std::optional<ThreadPool> pool_;
};

}  // namespace nimbara
