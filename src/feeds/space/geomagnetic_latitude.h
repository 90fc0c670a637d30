// Where a place lies in Earth's magnetic field. Pure.
#pragma once

#include "base/geodesy.h"

namespace nimbara {

/// Degrees from the geomagnetic equator, without a sign: the latitude at which a dipole's line of force that
/// rises as high as the one above the place would meet the ground. Follows the line with the first nine
/// coefficients of the International Geomagnetic Reference Field (13th generation, epoch 2020), good to two
/// degrees.
double geomagneticLatitude(Coordinate place);

}  // namespace nimbara
