// Signs of buttons and arrows as pictures, painted in code: which glyphs a font has differs from desktop to
// desktop. An image provider of the window's engine, which owns it.
#pragma once

#include <QQuickImageProvider>

namespace nimbara {

class LineSigns : public QQuickImageProvider {
 public:
  LineSigns() : QQuickImageProvider(QQuickImageProvider::Image) {}

  /// `id` is "NAME/COLOUR", like "up/1f64ab": up, down, back, forth, again, cross, arrow, warning.
  QImage requestImage(QString const& id, QSize* size, QSize const& requestedSize) override;
};

}  // namespace nimbara
