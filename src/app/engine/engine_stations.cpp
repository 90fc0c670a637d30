#include "app/engine/engine_stations.h"

#include <utility>

namespace nimbara {

// NOLINTBEGIN(performance-unnecessary-value-param): whoever does something with them keeps them
void StationActions::follow(Listener /*listener*/) {}
void StationActions::linkAccount(std::string /*id*/, std::string /*secret*/, std::string /*token*/) {}
void StationActions::linkAddress(std::string /*address*/, std::string /*name*/) {}
void StationActions::choose(std::string /*station*/) {}
void StationActions::chooseAround(std::string /*station*/) {}
// NOLINTEND(performance-unnecessary-value-param)

void EngineStations::stop() {
  {
    std::lock_guard const lock(mutex_);
    isOver_ = true;
    linking_.request_stop();
    if (!thread_) return;
  }
  thread_->stop();
}

void EngineStations::follow(Listener listener) {
  std::lock_guard const lock(mutex_);
  listener_ = std::move(listener);
}

void EngineStations::tell(std::function<void(StationDesk&)> const& change) {
  Listener listener;
  StationDesk shown;
  {
    std::lock_guard const lock(mutex_);
    change(desk_);
    listener = listener_;
    shown = desk_;
  }
  if (listener) listener(std::move(shown));
}

void EngineStations::run(StationTask task, Work work) {
  std::lock_guard const lock(mutex_);
  if (isOver_) return;
  if (!thread_) thread_.emplace(1);
  thread_->run([this, task, work = std::move(work)](std::stop_token const& stop) {
    tell([task](StationDesk& desk) { desk.task = task; });
    auto const feeds = surroundings_.feeds();
    work(feeds->stations(), stop);
    tell([](StationDesk& desk) {
      desk.task = StationTask::none;
      desk.consentUrl.clear();
    });
  });
}

void EngineStations::readAgain(StationService& service, StationNeed need, std::stop_token const& stop) {
  StationsReading reading = service.read(need, stop);
  auto const link = service.file().read();
  bool const hasAccount = link && link->hasAccount();
  tell([&](StationDesk& desk) {
    desk.reading = std::move(reading);
    desk.hasAccount = hasAccount;
  });
}

void EngineStations::look() {
  run(StationTask::reading, [this](StationService& service, std::stop_token const& stop) {
    readAgain(service, StationNeed::kept, stop);
    readAgain(service, StationNeed::shown, stop);
    surroundings_.onChange();
  });
}

void EngineStations::finish(StationService& service, LinkEnd end) {
  bool const isLinked = end.isLinked();
  tell([&](StationDesk& desk) {
    desk.end = std::move(end);
    desk.consentUrl.clear();
    desk.problem.clear();
  });
  if (!isLinked) return;
  readAgain(service, StationNeed::shown, {});
  surroundings_.onChange();
}

void EngineStations::linkAccount(std::string id, std::string secret, std::string token) {
  StationLink link{.kind = StationLinkKind::account,
                   .clientId = std::move(id),
                   .clientSecret = std::move(secret),
                   .refreshToken = std::move(token)};
  if (surroundings_.isStandIn) {
    if (link.clientId.empty()) link.clientId = "demo";
    if (link.clientSecret.empty()) link.clientSecret = "demo";
  }
  std::stop_source linking;
  {
    std::lock_guard const lock(mutex_);
    linking_ = linking;
  }
  bool const hasToken = !link.refreshToken.empty();
  run(hasToken ? StationTask::linking : StationTask::consent,
      [this, link = std::move(link), hasToken, linking](StationService& service,
                                                        std::stop_token const& stop) mutable {
        std::stop_callback const pass(stop, [&linking] { linking.request_stop(); });
        tell([](StationDesk& desk) { desk.end.reset(); });
        if (hasToken) return finish(service, linkByToken(service, link, linking.get_token()));
        auto const texts = surroundings_.wording()->texts;
        ConsentWays ways;
        ways.open = [this](std::string const& url) {
          tell([&url](StationDesk& desk) { desk.consentUrl = url; });
        };
        ways.done = texts->text("station.page.done");
        ways.failed = texts->text("station.page.failed");
        finish(service, linkByConsent(service, link, ways, linking.get_token()));
      });
}

void EngineStations::linkAddress(std::string address, std::string name) {
  StationLink link{.kind = StationLinkKind::address, .address = std::move(address), .name = std::move(name)};
  run(StationTask::linking,
      [this, link = std::move(link)](StationService& service, std::stop_token const& stop) {
        tell([](StationDesk& desk) { desk.end.reset(); });
        auto const place = surroundings_.place();
        finish(service,
               linkByAddress(service, link, place ? std::optional(place->coordinate) : std::nullopt, stop));
      });
}

void EngineStations::cancel() {
  std::lock_guard const lock(mutex_);
  linking_.request_stop();
}

void EngineStations::changeLink(StationService& service, std::function<void(StationLink&)> const& apply,
                                std::stop_token const& stop) {
  auto const changed = service.file().change(apply);
  tell([&](StationDesk& desk) {
    desk.problem = changed ? std::string() : changed.error();
    desk.end.reset();
  });
  if (!changed) return;
  readAgain(service, StationNeed::shown, stop);
  surroundings_.onChange();
}

void EngineStations::choose(std::string station) {
  run(StationTask::reading,
      [this, station = std::move(station)](StationService& service, std::stop_token const& stop) {
        changeLink(
            service,
            [&station](StationLink& link) {
              if (link.kind == StationLinkKind::around) toAccount(link);
              link.chosen = station;
            },
            stop);
      });
}

void EngineStations::lookAround() {
  run(StationTask::around, [this](StationService& service, std::stop_token const& stop) {
    auto const place = surroundings_.place();
    if (!place) return;
    auto around = std::make_shared<StationsAround>();
    around->place = place->name;
    around->at = place->coordinate;
    auto found = service.around(place->coordinate, stop);
    if (found) {
      around->stations = std::move(*found);
    } else {
      around->problem = found.error();
    }
    tell([&](StationDesk& desk) { desk.around = std::move(around); });
  });
}

void EngineStations::chooseAround(std::string station) {
  run(StationTask::reading,
      [this, station = std::move(station)](StationService& service, std::stop_token const& stop) {
        std::shared_ptr<StationsAround const> around;
        {
          std::lock_guard const lock(mutex_);
          around = desk_.around;
        }
        if (!around) return;
        changeLink(
            service,
            [&](StationLink& link) {
              link.kind = StationLinkKind::around;
              link.chosen = station;
              link.name = around->place;
              link.latitude = around->at.latitude;
              link.longitude = around->at.longitude;
            },
            stop);
      });
}

void EngineStations::unlink() {
  run(StationTask::reading, [this](StationService& service, std::stop_token const& stop) {
    auto const removed = service.unlink();
    tell([&](StationDesk& desk) {
      desk.problem = removed ? std::string() : removed.error();
      desk.end.reset();
      desk.around.reset();
    });
    readAgain(service, StationNeed::kept, stop);
    surroundings_.onChange();
  });
}

}  // namespace nimbara
