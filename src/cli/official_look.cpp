#include "cli/official_look.h"

#include "feeds/alerts/routing/official_sources.h"

#include <algorithm>

namespace nimbara {

namespace {

/// The shortest time between two questions for one list: as long as its source rests, or longer.
std::chrono::minutes freshness(GovAlerts const& kept) {
  std::chrono::minutes longest{5};
  for (GovSourceState const& state : kept.sources) {
    OfficialSource const* const source = officialSource(state.name);
    if (source != nullptr) longest = std::max(longest, source->rest);
  }
  return longest;
}

/// Warnings are worded when they are fetched, and who asks now may read another language.
bool isFresh(GovAlerts const& kept, Instant now) {
  if (!kept.alerts.empty()) return false;
  auto const checkedAt = kept.checkedAt();
  return !kept.failedSince() && checkedAt && *checkedAt <= now && now - *checkedAt < freshness(kept);
}

}  // namespace

OfficialLook::OfficialLook(GovAlertService& service, Clock const& clock, GovAlertPlace place)
    : service_(service), clock_(clock), place_(std::move(place)) {
  GovAlerts kept = service_.keptAlerts(place_);
  std::promise<GovAlerts> promise;
  answered_ = promise.get_future();
  if (kept.sources.empty() || isFresh(kept, clock_.now())) {
    promise.set_value(std::move(kept));
    return;
  }
  auto const shared = std::make_shared<std::promise<GovAlerts>>(std::move(promise));
  pool_.emplace(1U);
  pool_->run([this, shared](std::stop_token const&) {
    shared->set_value(service_.fetchAlerts(place_, {}, asking_.get_token()));
  });
}

OfficialLook::~OfficialLook() {
  asking_.request_stop();
}

OfficialLook::Answer OfficialLook::answer(std::chrono::milliseconds patience, std::stop_token const& stop) {
  std::stop_callback const passOn(stop, [this] { asking_.request_stop(); });
  if (answered_.wait_for(patience) != std::future_status::ready) asking_.request_stop();
  return answerOf(answered_.get());
}

OfficialLook::Answer OfficialLook::answerOf(GovAlerts alerts) const {
  Answer answer;
  answer.coverage = agedCoverage(coverageOf(alerts, place_.countryCode), clock_.now());
  answer.alerts = std::move(alerts.alerts);
  return answer;
}

}  // namespace nimbara
