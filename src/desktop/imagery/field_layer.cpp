#include "desktop/imagery/field_layer.h"

namespace nimbara {

FieldLayer::FieldLayer(InUse<ModelFieldService> service, Listener listener)
    : service_(std::move(service)),
      listener_(std::move(listener)),
      worker_([this](std::stop_token const& end) { work(end); }) {}

FieldLayer::~FieldLayer() {
  worker_.request_stop();
  want(std::nullopt);
}

void FieldLayer::want(std::optional<FieldWish> const& wish) {
  std::lock_guard const lock(mutex_);
  stop_.request_stop();
  stop_ = std::stop_source();
  wish_ = wish;
  isNew_ = wish.has_value();
  wake_.notify_all();
}

void FieldLayer::work(std::stop_token const& end) {
  std::unique_lock lock(mutex_);
  auto const isDue = [this] { return isNew_; };
  bool hasFailed = false;
  while (!end.stop_requested()) {
    if (hasFailed) {
      wake_.wait_for(lock, end, kAgain, isDue);
    } else {
      wake_.wait(lock, end, isDue);
    }
    if (end.stop_requested()) return;
    isNew_ = hasFailed = false;
    if (!wish_) continue;
    FieldAnswer answer{*wish_, nullptr, {}, 0, {}};
    std::stop_token const stop = stop_.get_token();
    lock.unlock();
    auto fields = service_()->fetch(modelGridFor(answer.wish.view), stop);
    if (!fields) {
      answer.failure = fields.error();
    } else if (!stop.stop_requested()) {
      answer.fields = std::move(*fields);
      answer.hour = hourNear(*answer.fields, answer.wish.time.value_or(answer.wish.now));
      answer.picture =
          fieldPicture(*answer.fields, answer.wish.kind, answer.hour, answer.wish.view, answer.wish.look);
    }
    hasFailed = answer.failure && !stop.stop_requested();
    if (!stop.stop_requested()) listener_(std::move(answer));
    lock.lock();
  }
}

}  // namespace nimbara
