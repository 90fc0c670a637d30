// The clouds that the globe and the map lie under, on the window's thread: fetched while either shows them.
// Says how old they are and why there are none. Owned by DesktopModel.
#pragma once

#include "desktop/imagery/cloud_layer.h"
#include "desktop/views/view_context.h"

#include <QObject>
#include <memory>
#include <set>
#include <string>

namespace nimbara {

class CloudModel : public QObject {
  Q_OBJECT

 public:
  /// Without a service there is nobody to ask, as in a window that only shows.
  CloudModel(InUse<CloudService> service, QObject* parent);
  ~CloudModel() override;

  bool canAsk() const { return static_cast<bool>(service_); }
  /// `who` shows clouds, or no more.
  void want(void const* who, bool isWanted);
  void take(CloudSky sky);

  /// Null where there are none, or none that still hold.
  QImage veil(Instant now) const;
  /// "2 h ago, EUMETSAT", or why there are none; empty where nobody can be asked.
  std::string note(ViewContext const& context) const;
  /// Whose they are; empty for none.
  std::string maker() const;
  /// Nothing is to come that a picture of the page should wait for.
  bool hasSettled() const { return !canAsk() || wanting_.empty() || isKnown_; }

 Q_SIGNALS:
  void changed();

 private:
  bool isCurrent(Instant now) const;

  InUse<CloudService> service_;
  std::set<void const*> wanting_;
  CloudSky sky_;
  bool isKnown_ = false;
  std::unique_ptr<CloudLayer> layer_;  ///< ends first
};

}  // namespace nimbara
