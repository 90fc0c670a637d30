// One more thing that a command asks beside its own question, and waits for only so long: what a feed knows
// once it has answered, or has been told that time is up.
#pragma once

#include "app/services/task_runner.h"

#include <chrono>
#include <functional>
#include <future>
#include <memory>
#include <stop_token>

namespace nimbara {

template <class T>
class SideLook {
 public:
  using Ask = std::function<T(std::stop_token const&)>;

  /// Begins to ask. What `ask` uses outlives the look.
  explicit SideLook(Ask ask) {
    auto const shared = std::make_shared<std::promise<T>>();
    answered_ = shared->get_future();
    pool_.run([ask = std::move(ask), shared, asking = asking_.get_token()](std::stop_token const&) {
      shared->set_value(ask(asking));
    });
  }
  ~SideLook() { asking_.request_stop(); }
  SideLook(SideLook const&) = delete;
  SideLook& operator=(SideLook const&) = delete;

  /// Once.
  T answer(std::chrono::milliseconds patience, std::stop_token const& stop) {
    std::stop_callback const passOn(stop, [this] { asking_.request_stop(); });
    if (answered_.wait_for(patience) != std::future_status::ready) asking_.request_stop();
    return answered_.get();
  }

 private:
  std::stop_source asking_;
  std::future<T> answered_;
  ThreadPool pool_{1};
};

}  // namespace nimbara
