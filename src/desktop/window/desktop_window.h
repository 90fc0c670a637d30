// The window: the engine with its pages, bound to a model. Lives on the window's thread; the model outlives
// it.
#pragma once

#include "desktop/core/desktop_options.h"
#include "desktop/window/models/desktop_model.h"
#include "desktop/window/refused_network.h"

#include <QQmlApplicationEngine>
#include <QQmlComponent>
#include <QQuickWindow>

namespace nimbara {

class DesktopWindow {
 public:
  /// The toolkit begins to read the pages on a thread of its own, while there is nothing to show yet.
  DesktopWindow();
  DesktopWindow(DesktopModel& model, DesktopOptions const& options);

  /// Once.
  void open(DesktopModel& model, DesktopOptions const& options);

  /// Null when the pages could not be loaded, which has been told on standard error.
  QQuickWindow* window() const { return window_; }
  /// Writes what the window shows. The error is a sentence.
  Result<void, std::string> savePicture(std::string const& file) const;

 private:
  RefusedNetwork network_;
  QQmlApplicationEngine engine_;
  QQmlComponent ahead_;
  QQmlComponent firstPageAhead_;
  QQuickWindow* window_ = nullptr;
};

}  // namespace nimbara
