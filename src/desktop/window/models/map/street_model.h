// The user's own tiles below the map's layers, on the window's thread. Owned by MapModel.
#pragma once

#include "desktop/imagery/street_layer.h"
#include "desktop/views/view_context.h"
#include "desktop/window/painting/map/map_layer.h"

#include <QObject>
#include <memory>
#include <optional>
#include <string>

namespace nimbara {

class StreetModel : public QObject {
  Q_OBJECT

 public:
  StreetModel(InUse<TileService> tiles, QObject* parent);
  ~StreetModel() override;

  /// Empty: the user has entered none. Whether it is another one, for which the map is to be looked at again.
  bool setPattern(std::string pattern);
  bool canAsk() const { return static_cast<bool>(tiles_) && !pattern_.empty(); }
  /// What the map shows and nobody moves any more; nothing while nobody looks.
  void look(std::optional<MapView> const& view, Instant now);
  /// None or one.
  MapLayerPictures pictures() const;
  /// That they are being loaded, or why some are missing; empty where all is well.
  std::string note(ViewContext const& context) const;
  /// Nothing is to come that a picture of the page should wait for.
  bool hasSettled() const { return !wish_ || (answer_ && answer_->wish == *wish_); }

 Q_SIGNALS:
  void pictured();

 private:
  void take(StreetAnswer answer);

  InUse<TileService> tiles_;
  std::string pattern_;
  std::optional<StreetWish> wish_;
  std::optional<StreetAnswer> answer_;  ///< the last
  std::unique_ptr<StreetLayer> layer_;  ///< ends first
};

}  // namespace nimbara
