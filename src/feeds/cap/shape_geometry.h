// Where a place lies to the shapes of a warning. Edges are straight in latitude and longitude, as issuers
// draw them, and take the shorter way round: an outline may cross ±180°, be cut there, or go round a pole.
// Pure.
#pragma once

#include "feeds/cap/cap_alert.h"

#include <optional>

namespace nimbara {

ShapeBox boxOf(WarningPolygon const& polygon);

/// Whether the place is in the box or no more than `km` away. May err to "yes".
bool isNear(ShapeBox const& box, Coordinate place, double km);

/// Even-odd rule; of a meridian or parallel that two outlines share the place on it is in one of them. False
/// for an outline without extent.
bool holds(WarningPolygon const& polygon, Coordinate place);
bool holds(WarningCircle const& circle, Coordinate place);

/// Kilometres to the nearest point of an edge, 0 within; nothing when that is further than `mostKm`, which is
/// at most some hundred.
std::optional<double> kmTo(WarningPolygon const& polygon, Coordinate place, double mostKm);
std::optional<double> kmTo(WarningCircle const& circle, Coordinate place, double mostKm);

/// Something is drawn that has an extent; a lone point says no more than a name.
bool isDrawn(CapArea const& area);

/// To the nearest shape of the area; 0 in one of them.
std::optional<double> kmTo(CapArea const& area, Coordinate place, double mostKm);

/// Computes the boxes of all polygons. Whoever makes a message that is asked about more than one place calls
/// it.
void noteBoxes(CapAlert& message);

}  // namespace nimbara
