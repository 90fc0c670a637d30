// The window: the engine with its pages, bound to a model. Lives on the window's thread; the model outlives
// it.
#pragma once

#include "desktop/core/desktop_options.h"
#include "desktop/window/desktop_model.h"

#include <QQmlApplicationEngine>
#include <QQuickWindow>

namespace nimbara {

class DesktopWindow {
 public:
  DesktopWindow(DesktopModel& model, DesktopOptions const& options);

  /// Null when the pages could not be loaded, which has been told on standard error.
  QQuickWindow* window() const { return window_; }
  /// Writes what the window shows. The error is a sentence.
  Result<void, std::string> savePicture(std::string const& file) const;

 private:
  QQmlApplicationEngine engine_;
  QQuickWindow* window_ = nullptr;
};

}  // namespace nimbara
