#include "desktop/imagery/field_layer.h"

namespace nimbara {

FieldLayer::FieldLayer(InUse<ModelFieldService> service, Listener listener)
    : service_(std::move(service)),
      listener_(std::move(listener)),
      worker_({kAgain, kMostRest},
              [this](FieldWish const& wish, std::stop_token const& stop) { return serve(wish, stop); }) {}

bool FieldLayer::serve(FieldWish const& wish, std::stop_token const& stop) const {
  auto fields = service_()->fetch(modelGridFor(wish.view), stop);
  if (stop.stop_requested()) return true;
  FieldAnswer answer{wish, nullptr, {}, 0, {}};
  if (fields) {
    answer.fields = std::move(*fields);
    answer.hour = hourNear(*answer.fields, wish.time.value_or(wish.now));
    answer.picture = fieldPicture(*answer.fields, wish.kind, answer.hour, wish.view, wish.look);
  } else {
    answer.failure = fields.error();
  }
  if (!stop.stop_requested()) listener_(std::move(answer));
  return fields.has_value();
}

}  // namespace nimbara
