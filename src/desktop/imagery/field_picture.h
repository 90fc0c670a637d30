// A model's field as a picture that lies on a map: temperature and precipitation as colours, pressure as
// isobars with their values, wind as arrows. Plain functions over values; any thread.
#pragma once

#include "base/units.h"
#include "feeds/imagery/model_fields.h"

#include <QColor>
#include <QImage>
#include <cstdint>
#include <span>

namespace nimbara {

struct FieldLook {
  QColor ink, halo;  ///< of lines, arrows and numbers
  int letters = 12;  ///< pixels
  Units units;
  bool operator==(FieldLook const&) const = default;
};

/// Of the view's size; transparent where the model says nothing. `hour` is one of the fields'.
QImage fieldPicture(ModelFields const& fields, FieldKind kind, std::size_t hour, MapView const& view,
                    FieldLook const& look);

struct FieldStop {
  double value = 0;  ///< °C or mm/h
  std::uint32_t rgb = 0;
};

/// The colours of a field, from the least value on; empty for pressure and wind, which are drawn as lines.
std::span<FieldStop const> fieldColours(FieldKind kind);

/// Between the stops; the first and the last hold beyond them.
std::uint32_t fieldColour(std::span<FieldStop const> stops, double value);

/// hPa between isobars, by how much of the world is seen.
double isobarStep(double zoom);

}  // namespace nimbara
