// The sixteen compass points.
#pragma once

#include <string_view>

namespace nimbara {

/// The point nearest to `degrees` from north through east; any finite angle, also negative. "N" for what is
/// not finite.
std::string_view compassPoint(double degrees);

/// The index of that point: 0 north, 4 east, 15 north-north-west.
int compassIndex(double degrees);

}  // namespace nimbara
