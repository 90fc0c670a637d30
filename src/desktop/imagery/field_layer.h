// Fetches a model's fields over what a map shows and draws them, on a thread of its own, while somebody looks
// at them. Owned by whoever shows it; after its end the listener is called no more.
#pragma once

#include "app/services/in_use.h"
#include "desktop/imagery/field_picture.h"
#include "desktop/imagery/wish_worker.h"
#include "feeds/imagery/model_field_service.h"

#include <functional>
#include <optional>

namespace nimbara {

struct FieldWish {
  FieldKind kind = FieldKind::temperature;
  MapView view;
  std::optional<Instant> time;  ///< none: now
  Instant now;
  FieldLook look;
  bool operator==(FieldWish const&) const = default;
};

/// What became of a wish.
struct FieldAnswer {
  FieldWish wish;
  std::shared_ptr<ModelFields const> fields;  ///< null: it could not be had
  std::optional<ServiceFailure> failure;
  std::size_t hour = 0;  ///< of the fields
  QImage picture;
};

class FieldLayer {
 public:
  /// Called on the layer's thread, without locks.
  using Listener = std::function<void(FieldAnswer)>;
  /// After this span fields that could not be had are asked for again, later and later up to the second.
  static constexpr std::chrono::minutes kAgain{1}, kMostRest{16};

  FieldLayer(InUse<ModelFieldService> service, Listener listener);

  /// What was wanted before is wanted no more; nothing while nobody looks. Returns at once.
  void want(std::optional<FieldWish> const& wish) { worker_.want(wish); }

 private:
  bool serve(FieldWish const& wish, std::stop_token const& stop) const;

  InUse<ModelFieldService> service_;
  Listener listener_;
  WishWorker<FieldWish> worker_;  ///< ends first
};

}  // namespace nimbara
