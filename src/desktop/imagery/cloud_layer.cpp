#include "desktop/imagery/cloud_layer.h"

#include "desktop/imagery/cloud_veil.h"

namespace nimbara {

CloudLayer::CloudLayer(InUse<CloudService> service, Listener listener)
    : service_(std::move(service)),
      listener_(std::move(listener)),
      worker_([this](std::stop_token const& end) { work(end); }) {}

CloudLayer::~CloudLayer() {
  worker_.request_stop();
  want(false);
}

void CloudLayer::want(bool isWanted) {
  std::lock_guard const lock(mutex_);
  if (isWanted == isWanted_) return;
  isWanted_ = isWanted;
  if (isWanted) stop_ = std::stop_source();
  if (!isWanted) stop_.request_stop();
  wake_.notify_all();
}

void CloudLayer::work(std::stop_token const& end) {
  std::unique_lock lock(mutex_);
  while (wake_.wait(lock, end, [this] { return isWanted_; })) {
    std::stop_token const stop = stop_.get_token();
    lock.unlock();
    look(stop);
    lock.lock();
    wake_.wait_for(lock, end, kAgain, [&stop] { return stop.stop_requested(); });
  }
}

void CloudLayer::look(std::stop_token const& stop) {
  std::optional<QImage> made;
  CloudReading reading = service_()->fetch(
      [&made](std::string_view bytes) {
        made = cloudVeil(bytes);
        return made.has_value();
      },
      stop);
  if (stop.stop_requested()) return;
  std::optional<Instant> const time = reading.picture ? std::optional(reading.picture->time) : std::nullopt;
  bool const isOther = !isKnown_ || time != sky_.time || reading.misses != sky_.misses;
  if (!isOther) return;
  isKnown_ = true;
  if (time != sky_.time) {
    // The service may have had it from an earlier question.
    if (time && !made) made = cloudVeil(*reading.picture->bytes);
    sky_.veil = made.value_or(QImage());
  }
  sky_.time = time;
  if (reading.picture) sky_.source = reading.picture->source;
  sky_.misses = std::move(reading.misses);
  listener_(sky_);
}

}  // namespace nimbara
