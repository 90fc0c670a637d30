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
  wake_.notify_all();
}

void FieldLayer::work(std::stop_token const& end) {
  std::unique_lock lock(mutex_);
  while (wake_.wait(lock, end, [this] { return wish_.has_value(); })) {
    FieldAnswer answer{*std::exchange(wish_, std::nullopt), nullptr, {}, 0, {}};
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
    if (!stop.stop_requested()) listener_(std::move(answer));
    lock.lock();
  }
}

}  // namespace nimbara
