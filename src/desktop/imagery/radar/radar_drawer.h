// Draws one picture of the radar around a place without a window or a screen, for programs without the
// toolkit.
#pragma once

#include "feeds/imagery/radar/radar_drawing.h"

#include <QImage>

namespace nimbara {

/// The picture, or a `drawingCode` that says why there is none. Needs the toolkit's fonts.
struct Drawn {
  int code = drawingCode::kFailed;
  QImage picture;
};
Drawn drawnRadar(RadarDrawing const& drawing);

/// The whole of a program that was started with `kDrawRadar` and a file; gives its exit code.
int runRadarDrawer(int& count, char** arguments);

}  // namespace nimbara
