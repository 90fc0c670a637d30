// The outlines of countries. They reach beyond the coast, so whoever asks must know that it is not open sea.
#pragma once

#include "base/geodesy.h"

#include <cstdint>

namespace nimbara::gazetteer {

/// The number of the country whose outline encloses the coordinate; kNone where no outline does.
std::uint16_t countryWithin(Coordinate coordinate);

}  // namespace nimbara::gazetteer
