// The earth's surface as a picture, painted when the globe is first shown: land, sea, borders and, in the
// alpha channel, the lights of cities. Plate carrée, from 180° west to 180° east, north above. Any thread may
// paint.
#pragma once

#include <QColor>
#include <QImage>

namespace nimbara {

/// RGBA, half as high as wide. The alpha channel is the light at night, 0-255.
QImage paintEarth(int width);

/// What a place of the picture shows by day; bounds wrap around the world.
QRgb earthTexel(QImage const& earth, double latitude, double longitude);

}  // namespace nimbara
