#include "feeds/feed_source.h"

#include "base/text/text.h"
#include "feeds/fetching/feed_exchange.h"
#include "feeds/quakes/earthquake_event.h"
#include "feeds/space/element_text.h"
#include "platform/network_reach.h"

namespace nimbara {

namespace {

constexpr int kRefused = 403;

}  // namespace

Result<std::string, ServiceFailure> servedBody(FeedKey const& key, std::string_view body) {
  auto const unreadable = [](std::string why) {
    return std::unexpected(ServiceFailure::of(ServiceFailure::Kind::unreadable, std::move(why)));
  };
  if (key.kind == FeedKey::Kind::quakes) {
    auto const events = parseEarthquakes(body);
    if (!events)
      return unreadable("the response is not a valid list of earthquakes (" + events.error().text() + ")");
    return std::string(body);
  }
  auto elements = elementText(body);
  if (!elements) return unreadable(std::move(elements.error()));
  if (elements->count == 0) return unreadable("the response lists no satellites");
  return std::move(elements->text);
}

HttpRequest relayRequest(std::string const& base, FeedKey const& key) {
  constexpr std::size_t kLargestBody = std::size_t{16} << 20;
  constexpr std::chrono::seconds kTimeout{25};
  HttpRequest request;
  request.url = base + "/api/feed.php?f=" + std::string(enumName(key.kind));
  if (!key.group.empty()) request.url += "&p=" + percentEncoded(key.group);
  request.timeout = kTimeout;
  request.maxBodyBytes = kLargestBody;
  return request;
}

Result<FeedBody, ServiceFailure> RelayFeedSource::get(FeedKey const& key, std::stop_token const& stop) {
  {
    std::lock_guard const lock(mutex_);
    auto const resting = notBefore_.find(key);
    if (resting != notBefore_.end() && clock_.now() < resting->second) {
      auto failure = ServiceFailure::of(ServiceFailure::Kind::leftAlone);
      failure.nextTry = resting->second;
      return std::unexpected(std::move(failure));
    }
  }
  return ask(key, stop);
}

Result<FeedBody, ServiceFailure> RelayFeedSource::ask(FeedKey const& key, std::stop_token const& stop) {
  auto const answer = exchange(http_, relayRequest(base_, key), {}, stop);
  auto body = answer ? servedBody(key, (*answer)->body) : std::unexpected(answer.error());
  if (!body) {
    ServiceFailure& failure = body.error();
    bool const wasAsked =
        !failure.transport || (!stop.stop_requested() && !isNetworkAway(*failure.transport));
    if (wasAsked) pause(key, failure.status);
    return std::unexpected(std::move(failure));
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
