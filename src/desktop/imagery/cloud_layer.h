// Fetches the clouds of the globe and makes them a veil, on a thread of its own, while somebody looks at
// them. Owned by whoever shows it; after its end the listener is called no more.
#pragma once

#include "app/services/in_use.h"
#include "desktop/imagery/wish_worker.h"
#include "feeds/imagery/cloud_service.h"

#include <QImage>
#include <functional>
#include <optional>
#include <vector>

namespace nimbara {

struct CloudSky {
  QImage veil;                  ///< null without a picture
  std::optional<Instant> time;  ///< of the picture
  CloudSource source = CloudSource::nowCoast;
  std::vector<CloudMiss> misses;  ///< of the last question
};

class CloudLayer {
 public:
  /// Called on the layer's thread, without locks.
  using Listener = std::function<void(CloudSky)>;
  /// How often the service is looked at, which knows whether it is to ask somebody.
  static constexpr std::chrono::minutes kAgain{5};

  CloudLayer(InUse<CloudService> service, Listener listener);

  /// Somebody looks, or nobody any more; what is under way then ends. Returns at once.
  void want(bool isWanted) { worker_.want(isWanted ? std::optional(Looked()) : std::nullopt); }

 private:
  struct Looked {
    bool operator==(Looked const&) const = default;
  };

  void look(std::stop_token const& stop);

  InUse<CloudService> service_;
  Listener listener_;
  CloudSky sky_;  // this and the next of the layer's thread
  bool isKnown_ = false;
  WishWorker<Looked> worker_;  ///< ends first
};

}  // namespace nimbara
