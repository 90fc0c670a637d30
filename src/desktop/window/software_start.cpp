#include "desktop/window/software_start.h"

#include <QCoreApplication>
#include <cstdlib>
#include <unistd.h>

namespace nimbara {

namespace {

constexpr char kVariable[] = "QT_QUICK_BACKEND";
constexpr char kSoftware[] = "software";

}  // namespace

void endWhereNothingCanBeDrawn(QQuickWindow& window, std::function<void(std::string)> const& tell) {
  QObject::connect(&window, &QQuickWindow::sceneGraphError, QCoreApplication::instance(),
                   [tell](QQuickWindow::SceneGraphError, QString const& why) {
                     tell(why.section(QLatin1Char('\n'), 0, 0).toStdString());
                     QCoreApplication::exit(kCannotDraw);
                   });
}

void startInSoftware(std::filesystem::path const& program, char* const* arguments) {
  if (qgetenv(kVariable) == kSoftware) return;
  qputenv(kVariable, kSoftware);
  execv(program.c_str(), arguments);
}

}  // namespace nimbara
