#include "feeds/feed_source.h"

#include "base/text/text.h"
#include "feeds/fetching/feed_exchange.h"
#include "feeds/fetching/plain_problem.h"
#include "feeds/quakes/earthquake_event.h"
#include "feeds/space/element_text.h"
#include "platform/network_reach.h"

namespace nimbara {

namespace {

constexpr std::size_t kLargestBody = std::size_t{16} << 20;
constexpr std::chrono::seconds kTimeout{25};
constexpr int kRefused = 403;

}  // namespace

Result<std::string, std::string> servedBody(FeedKey const& key, std::string_view body) {
  if (key.kind == FeedKey::Kind::quakes) {
    auto const events = parseEarthquakes(body);
    if (!events)
      return std::unexpected("the response is not a valid list of earthquakes (" + events.error().text() +
                             ")");
    return std::string(body);
  }
  auto elements = elementText(body);
  if (!elements) return std::unexpected(std::move(elements.error()));
  if (elements->count == 0) return std::unexpected("the response lists no satellites");
  return std::move(elements->text);
}

HttpRequest relayRequest(std::string const& base, FeedKey const& key) {
  HttpRequest request;
  request.url = base + "/api/feed.php?f=" + std::string(enumName(key.kind));
  if (!key.group.empty()) request.url += "&p=" + percentEncoded(key.group);
  request.timeout = kTimeout;
  request.maxBodyBytes = kLargestBody;
  return request;
}

Result<FeedBody, std::string> RelayFeedSource::get(FeedKey const& key, std::stop_token const& stop) {
  {
    std::lock_guard const lock(mutex_);
    auto const resting = notBefore_.find(key);
    if (resting != notBefore_.end() && clock_.now() < resting->second) {
      return std::unexpected(withNextRequest("the service failed a short while ago", resting->second));
    }
  }
  return ask(key, stop);
}

Result<FeedBody, std::string> RelayFeedSource::ask(FeedKey const& key, std::stop_token const& stop) {
  auto const answer = http_.get(relayRequest(base_, key), stop);
  if (!answer) {
    bool const wasAsked = !stop.stop_requested() && !isNetworkAway(answer.error().kind);
    if (wasAsked) pause(key, 0);
    return std::unexpected(networkProblem(answer.error()));
  }
  if (!isSuccess(answer->status)) {
    pause(key, answer->status);
    return std::unexpected(statusProblem(answer->status));
  }
  auto body = servedBody(key, answer->body);
  if (!body) {
    pause(key, answer->status);
    return std::unexpected(std::move(body.error()));
  }
  return FeedBody{std::move(*body), clock_.now()};
}

/// The list of earthquakes is asked for every few minutes at most as it is.
void RelayFeedSource::pause(FeedKey const& key, int status) {
  if (key.kind != FeedKey::Kind::satellites) return;
  std::lock_guard const lock(mutex_);
  notBefore_[key] = clock_.now() + (status == kRefused ? Instant::duration(kPauseAfterRefusal)
                                                       : Instant::duration(kPauseAfterFailure));
}

}  // namespace nimbara
