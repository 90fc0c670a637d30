#include "desktop/imagery/cloud_layer.h"

#include "desktop/imagery/cloud_veil.h"

namespace nimbara {

CloudLayer::CloudLayer(InUse<CloudService> service, Listener listener)
    : service_(std::move(service)),
      listener_(std::move(listener)),
      worker_({kAgain, kAgain}, [this](Looked const& /*wish*/, std::stop_token const& stop) {
        look(stop);
        return false;
      }) {}

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
