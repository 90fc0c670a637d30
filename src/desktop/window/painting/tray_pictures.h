// The tray's picture: the temperature on the colours of the present sky, painted in the sizes that panels
// have. And the program's own, which is the same without a temperature.
#pragma once

#include "desktop/views/tray_view.h"

#include <QIcon>
#include <QImage>
#include <vector>

namespace nimbara {

QImage trayImage(TrayView const& view, int side);
std::vector<TrayPicture> trayPictures(TrayView const& view);
/// For window managers and task lists of X11, which do not look for the installed one.
QIcon programIcon();

}  // namespace nimbara
