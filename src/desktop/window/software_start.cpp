#include "desktop/window/software_start.h"

#include <QCoreApplication>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <algorithm>
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

bool isSoftwareRenderer(std::string_view name) {
  constexpr std::string_view kNames[] = {"llvmpipe", "softpipe", "swrast", "SwiftShader",
                                         "Software Rasterizer"};
  return std::ranges::any_of(kNames, [name](std::string_view known) { return name.contains(known); });
}

void whenRendererIsKnown(QQuickWindow& window, std::function<void(std::string)> tell) {
  auto const ask = [&window, tell = std::move(tell)] {  // where it is drawn
    auto* const context = QOpenGLContext::currentContext();
    auto const* const name = context == nullptr ? nullptr : context->functions()->glGetString(GL_RENDERER);
    std::string known = name == nullptr ? std::string() : reinterpret_cast<char const*>(name);
    QMetaObject::invokeMethod(
        &window, [tell, known = std::move(known)] { tell(known); }, Qt::QueuedConnection);
  };
  QObject::connect(&window, &QQuickWindow::beforeRendering, &window, ask,
                   static_cast<Qt::ConnectionType>(Qt::DirectConnection | Qt::SingleShotConnection));
}

void startInSoftware(std::filesystem::path const& program, char* const* arguments) {
  if (qgetenv(kVariable) == kSoftware) return;
  qputenv(kVariable, kSoftware);
  execv(program.c_str(), arguments);
}

}  // namespace nimbara
