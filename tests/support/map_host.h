// The hosts of a map's pictures: answers by what an address has in it, from any thread, and can be held so
// that a test sees what is under way.
#pragma once

#include "platform/http/http_client.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace nimbara::test {

class MapHost final : public HttpClient {
 public:
  using Answer = Result<HttpResponse, HttpError>;

  /// Of addresses with `part` in them; a later rule goes before an earlier one. Without a rule: 404.
  void answer(std::string part, int status, std::string body) {
    answer(std::move(part), status, [body = std::move(body)](std::string const&) { return body; });
  }
  /// The body by the address.
  void answer(std::string part, int status, std::function<std::string(std::string const&)> body) {
    std::lock_guard const lock(mutex_);
    rules_.insert(rules_.begin(), {std::move(part), status, std::move(body)});
  }
  /// Addresses with that in them wait until they are let go, or stopped.
  void hold(std::string part) {
    std::lock_guard const lock(mutex_);
    held_ = std::move(part);
  }
  void letGo() {
    hold({});
    changed_.notify_all();
  }
  /// Blocks until such an address was asked for; false after a long while.
  bool wasAsked(std::string_view part) {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, std::chrono::seconds(20), [&] { return countOf(part) > 0; });
  }
  std::size_t asked(std::string_view part = {}) {
    std::lock_guard const lock(mutex_);
    return countOf(part);
  }

  Answer get(HttpRequest const& request, std::stop_token stop) override {
    std::unique_lock lock(mutex_);
    asked_.push_back(request.url);
    changed_.notify_all();
    changed_.wait(lock, stop, [&] { return held_.empty() || !request.url.contains(held_); });
    if (stop.stop_requested()) return std::unexpected(HttpError{HttpError::Kind::cancelled, "stopped"});
    auto const rule =
        std::ranges::find_if(rules_, [&](Rule const& each) { return request.url.contains(each.part); });
    if (rule == rules_.end()) return HttpResponse{404, {}, ""};
    return HttpResponse{rule->status, {}, rule->body(request.url)};
  }

 private:
  struct Rule {
    std::string part;
    int status;
    std::function<std::string(std::string const&)> body;
  };

  std::size_t countOf(std::string_view part) const {
    return static_cast<std::size_t>(std::ranges::count_if(
        asked_, [part](std::string const& url) { return std::string_view(url).contains(part); }));
  }

  std::mutex mutex_;
  std::condition_variable_any changed_;
  std::vector<Rule> rules_;
  std::string held_;
  std::vector<std::string> asked_;
};

}  // namespace nimbara::test
