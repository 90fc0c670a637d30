// Clouds as a veil: how much of the ground each point of an infrared picture hides, made of what the
// supplier's shades say, and how it lies on a picture of the earth or on a map. Plain functions over
// pictures.
#pragma once

#include "base/web_mercator.h"

#include <QImage>
#include <optional>
#include <string_view>

namespace nimbara {

/// Of one byte for each point, from 0 for a clear sky to 255, between the limits of the supplier's picture.
/// Nothing for bytes that are no picture, or one in which all points are alike or transparent.
std::optional<QImage> cloudVeil(std::string_view bytes);

/// 0 to 255, between the veil's points; 0 beyond its limits.
int cloudsAt(QImage const& veil, Coordinate place);

/// A picture of the whole earth (plate carrée, 8888, lights of cities in alpha) under clouds, which hide
/// those lights as well.
QImage underClouds(QImage earth, QImage const& veil);

/// The part of a veil that a map shows, of the view's size; transparent where there are no clouds.
QImage cloudsOnMap(QImage const& veil, MapView const& view);

}  // namespace nimbara
