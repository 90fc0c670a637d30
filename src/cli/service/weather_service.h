// The watch as a service of the user's session: keeps a snapshot of what the engine's services have learnt,
// answers callers on the bus from it and announces what changes. Reading the caches and asking for a nowcast
// is work for threads of its own; whoever calls never waits for it. Owned by the watch. Made before the
// engine, which calls it until its end, and stopped before that.
#pragma once

#include "app/services/task_runner.h"
#include "cli/service/service_snapshot.h"
#include "platform/clock.h"
#include "platform/session/session_service.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace nimbara {

class Engine;

class WeatherService final : public ServiceFace {
 public:
  /// Between forecasts that callers ask for, and between looks for a nowcast of one place.
  static constexpr std::chrono::seconds kRefreshRest{60};
  /// A check of warnings that is older is made anew, where no notification pass has done so.
  static constexpr std::chrono::minutes kWarningsAge{10};

  struct Surroundings {
    Clock const& clock;
    /// Puts the face on the bus; null where that is not possible.
    std::function<std::unique_ptr<SessionService>(ServiceFace&)> publish;
    /// Shows the place in the window; the list of places for an empty text.
    std::function<void(std::string const& place, std::string const& activationToken)> open;
  };

  explicit WeatherService(Surroundings surroundings);
  ~WeatherService() override { stop(); }
  WeatherService(WeatherService const&) = delete;
  WeatherService& operator=(WeatherService const&) = delete;

  /// Before the engine begins; until `stop` it looks whenever it is told to.
  void follow(Engine& engine);
  void stop();

  /// Something may be known that was not: a forecast, warnings, other places. Any thread; returns at once.
  void lookAgain();
  /// A forecast has come. Where no notification pass asks for warnings, as on a desktop that shows none or
  /// where another process notifies, they are asked for as often as forecasts.
  void noteForecast();

  ServiceProperties properties() override;
  ServiceRecords places() override;
  std::optional<ServiceRecord> current(std::string const& place) override;
  std::optional<ServiceRecords> hours(std::string const& place) override;
  std::optional<ServiceWarnings> warnings(std::string const& place) override;
  std::optional<ServiceNowcast> nowcast(std::string const& place) override;
  bool refresh() override;
  std::vector<SearchHit> search(std::string const& text) override;
  std::optional<SearchHit> found(std::string const& id) override;
  void open(std::string const& id, std::string const& activationToken) override;

 private:
  /// For what waits for a service, for a second such, and for what does not wait.
  static constexpr unsigned kThreads = 3;

  std::shared_ptr<ServiceSnapshot const> snapshot() const;
  std::shared_ptr<ServiceSnapshot const> read(Engine& engine) const;
  void look();
  bool isChecked(ServicePlace const& place) const;
  void checkWarnings(std::stop_token const& stop) const;
  void askNowcast(ServicePlace const& place);

  Surroundings around_;
  std::atomic<Engine*> engine_ = nullptr;
  mutable std::mutex mutex_;  // guards the three below
  std::shared_ptr<ServiceSnapshot const> snapshot_ = std::make_shared<ServiceSnapshot>();
  /// When the nowcasts of places were looked for.
  std::map<std::string, std::chrono::steady_clock::time_point> nowcastsAsked_;
  std::optional<std::chrono::steady_clock::time_point> refreshedAt_;
  std::atomic<bool> isLooking_ = false;   ///< a look is waiting
  std::atomic<bool> isChecking_ = false;  ///< warnings are being asked for
  std::mutex turn_;                       // of looks, one at a time; guards the next
  std::unique_ptr<SessionService> bus_;
  ThreadPool work_{kThreads};
};

}  // namespace nimbara
