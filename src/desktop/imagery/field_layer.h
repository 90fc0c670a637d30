// Fetches a model's fields over what a map shows and draws them, on a thread of its own, while somebody looks
// at them. Owned by whoever shows it; after its end the listener is called no more.
#pragma once

#include "app/services/in_use.h"
#include "desktop/imagery/field_picture.h"
#include "feeds/imagery/model_field_service.h"

#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>

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
  /// After this span fields that could not be had are asked for again.
  static constexpr std::chrono::minutes kAgain{2};

  FieldLayer(InUse<ModelFieldService> service, Listener listener);
  ~FieldLayer();
  FieldLayer(FieldLayer const&) = delete;
  FieldLayer& operator=(FieldLayer const&) = delete;

  /// What was wanted before is wanted no more; nothing while nobody looks. Returns at once.
  void want(std::optional<FieldWish> const& wish);

 private:
  void work(std::stop_token const& end);

  InUse<ModelFieldService> service_;
  Listener listener_;
  std::mutex mutex_;  // guards the three below
  std::condition_variable_any wake_;
  std::optional<FieldWish> wish_;
  bool isNew_ = false;  ///< nobody has begun with it
  std::stop_source stop_;
  std::jthread worker_;
};

}  // namespace nimbara
