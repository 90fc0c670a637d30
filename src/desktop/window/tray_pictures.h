// The tray's picture: the temperature on the colours of the present sky, painted in the sizes that panels
// have.
#pragma once

#include "desktop/views/tray_view.h"

#include <QImage>
#include <vector>

namespace nimbara {

QImage trayImage(TrayView const& view, int side);
std::vector<TrayPicture> trayPictures(TrayView const& view);

}  // namespace nimbara
