#include "feeds/imagery/imagery_requests.h"

#include "feeds/fetching/feed_exchange.h"

namespace nimbara {

namespace {}  // namespace

Result<HttpResponse, ServiceFailure> ImageryRequests::get(std::string url, std::size_t largest,
                                                          std::stop_token const& stop) {
  constexpr std::chrono::seconds kLongestSilence{8};
  constexpr std::chrono::seconds kTimeout{15};
  using Kind = ServiceFailure::Kind;
  std::unique_lock lock(mutex_);
  if (!freed_.wait(lock, stop, [this] { return !budget_.isFull(); }))
    return std::unexpected(ServiceFailure::of(Kind::noAnswer));
  if (auto const wait = budget_.begin(hostOf(url), clock_.steadyNow())) {
    auto failure = ServiceFailure::of(Kind::leftAlone, "it had sixty requests within a minute");
    failure.nextTry = clock_.now() + *wait;
    return std::unexpected(std::move(failure));
  }
  lock.unlock();
  HttpRequest request;
  request.url = std::move(url);
  request.timeout = kTimeout;
  request.longestSilence = kLongestSilence;
  request.maxBodyBytes = largest;
  auto answer = exchange(http_, std::move(request), std::nullopt, stop);
  lock.lock();
  budget_.end();
  freed_.notify_one();
  if (!answer) return std::unexpected(std::move(answer.error()));
  return std::move(**answer);
}

std::string hostOf(std::string_view url) {
  auto const scheme = url.find("://");
  if (scheme == std::string_view::npos) return {};
  url.remove_prefix(scheme + 3);
  return std::string(url.substr(0, url.find_first_of("/?#")));
}

}  // namespace nimbara
