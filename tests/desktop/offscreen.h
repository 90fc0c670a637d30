// The window's toolkit in tests: without screen and GPU, with what it complains of kept for the test to see.
#pragma once

#include "desktop/window/painting/line_signs.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QAccessibleInterface>
#include <QGuiApplication>
#include <QImage>
#include <QQuickItem>
#include <set>
#include <string>
#include <vector>

/// The toolkit looks for fonts and lets go of some of what it found only with the process.
extern "C" [[gnu::used]] inline char const* __lsan_default_suppressions() {  // NOLINT(*-identifier,*-naming)
  return "leak:libfontconfig\n";
}

namespace nimbara::test {

inline std::vector<std::string>& complaints() {
  static std::vector<std::string> list;
  return list;
}

inline void noteComplaint(QtMsgType type, QMessageLogContext const& /*where*/, QString const& text) {
  bool const isOfThePlatform = text.startsWith(QLatin1String("QStandardPaths")) ||
                               text.startsWith(QLatin1String("This plugin does not"));
  if (type != QtDebugMsg && !isOfThePlatform) complaints().push_back(text.toStdString());
}

/// One for the whole program.
inline QGuiApplication& offscreenApplication() {
  static int count = 1;
  static char name[] = "desktop_tests";
  static char* arguments[] = {name, nullptr};
  static QGuiApplication* const kApplication = [] {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    qInstallMessageHandler(noteComplaint);
    return new QGuiApplication(count, arguments);
  }();
  return *kApplication;
}

/// Before whatever else of the toolkit a test holds.
struct OffscreenTest : testing::Test {
  OffscreenTest() {
    offscreenApplication();
    complaints().clear();
  }
};

/// What a screen reader says of it; empty where it says nothing.
inline std::string accessibleName(QQuickItem* item) {
  auto* const seen = QAccessible::queryAccessibleInterface(item);
  return seen == nullptr ? std::string() : seen->text(QAccessible::Name).toStdString();
}

inline int colourCount(QImage const& image) {
  std::set<QRgb> colours;
  for (int y = 0; y < image.height(); y += 3) {
    for (int x = 0; x < image.width(); x += 3) colours.insert(image.pixel(x, y));
  }
  return static_cast<int>(colours.size());
}

}  // namespace nimbara::test
