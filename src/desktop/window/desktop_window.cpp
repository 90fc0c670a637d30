#include "desktop/window/desktop_window.h"

#include "desktop/window/page_items.h"
#include "desktop/window/painting/condition_pictures.h"
#include "desktop/window/painting/line_signs.h"
#include "desktop/window/software_start.h"

#include <QGuiApplication>
#include <QImage>

namespace nimbara {

namespace {

QUrl pageUrl(char const* name) {
  return {QStringLiteral("qrc:/pages/NimbaraPages/%1.qml").arg(QLatin1String(name))};
}

}  // namespace

DesktopWindow::DesktopWindow() : ahead_(&engine_), firstPageAhead_(&engine_) {
  enrolPageItems();
  engine_.setNetworkAccessManagerFactory(&network_);
  engine_.addImportPath(QStringLiteral(":/pages"));
  ahead_.loadUrl(pageUrl("Main"), QQmlComponent::Asynchronous);
  firstPageAhead_.loadUrl(pageUrl("NowPage"), QQmlComponent::Asynchronous);
}

DesktopWindow::DesktopWindow(DesktopModel& model, DesktopOptions const& options) : DesktopWindow() {
  open(model, options);
}

void DesktopWindow::open(DesktopModel& model, DesktopOptions const& options) {
  WindowSize const size = options.size.value_or(WindowSize());
  engine_.addImageProvider(QStringLiteral("sky"), new ConditionPictures);
  engine_.addImageProvider(QStringLiteral("sign"), new LineSigns);
  setPageModel(engine_, model);
  engine_.setInitialProperties(
      {{QStringLiteral("page"), viewName(enumName(options.page.value_or(DesktopPage::now)))},
       {QStringLiteral("theme"), options.theme ? viewName(enumName(*options.theme)) : QString()},
       {QStringLiteral("width"), size.width},
       {QStringLiteral("height"), size.height}});
  if (options.zoom) model.map()->setHomeZoom(*options.zoom);
  if (!options.layers.empty()) model.map()->setLayers(options.layers);
  engine_.load(pageUrl("Main"));
  if (!engine_.rootObjects().isEmpty()) window_ = qobject_cast<QQuickWindow*>(engine_.rootObjects().front());
  if (window_ == nullptr) return;
  whenRendererIsKnown(*window_, [globe = model.globe(), wanted = options.globe](std::string const& renderer) {
    bool const isCard = !isSoftwareRenderer(renderer);
    globe->setInSpace(wanted == DesktopGlobe::automatic ? isCard : wanted == DesktopGlobe::solid);
  });
}

Result<void, std::string> DesktopWindow::savePicture(std::string const& file) const {
  QImage const picture = window_->grabWindow();
  if (picture.isNull() || !picture.save(QString::fromStdString(file), "PNG")) {
    return std::unexpected("the picture " + file + " cannot be written");
  }
  return {};
}

}  // namespace nimbara
