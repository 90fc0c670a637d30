#include "desktop/window/desktop_window.h"

#include "desktop/window/painting/condition_pictures.h"
#include "desktop/window/painting/flat_globe.h"
#include "desktop/window/painting/kp_items.h"
#include "desktop/window/painting/line_signs.h"
#include "desktop/window/painting/meteogram_item.h"
#include "desktop/window/painting/quake_map_item.h"
#include "desktop/window/painting/sky_items.h"
#include "desktop/window/painting/sky_scenery.h"

#include <QGuiApplication>
#include <QImage>
#include <QQmlContext>

namespace nimbara {

namespace {

void registerItems() {
  static bool const kOnce = [] {
    qmlRegisterType<WindCompass>("NimbaraItems", 1, 0, "WindCompass");
    qmlRegisterType<SunArc>("NimbaraItems", 1, 0, "SunArc");
    qmlRegisterType<MoonDisc>("NimbaraItems", 1, 0, "MoonDisc");
    qmlRegisterType<SkyScenery>("NimbaraItems", 1, 0, "SkyScenery");
    qmlRegisterType<MeteogramItem>("NimbaraItems", 1, 0, "MeteogramItem");
    qmlRegisterType<FlatGlobe>("NimbaraItems", 1, 0, "FlatGlobe");
    qmlRegisterAnonymousType<GlobeModel>("NimbaraItems", 1);
    qmlRegisterType<QuakeMapItem>("NimbaraItems", 1, 0, "QuakeMapItem");
    qmlRegisterType<KpGauge>("NimbaraItems", 1, 0, "KpGauge");
    qmlRegisterType<KpBarsItem>("NimbaraItems", 1, 0, "KpBarsItem");
    qmlRegisterAnonymousType<HazardsModel>("NimbaraItems", 1);
    qmlRegisterAnonymousType<DesktopModel>("NimbaraItems", 1);
    qmlRegisterAnonymousType<NotificationsModel>("NimbaraItems", 1);
    qmlRegisterAnonymousType<SettingsModel>("NimbaraItems", 1);
    qmlRegisterAnonymousType<RecordModel>("NimbaraItems", 1);
    qmlRegisterAnonymousType<RecordListModel>("NimbaraItems", 1);
    return true;
  }();
  std::ignore = kOnce;
}

QUrl pageUrl(char const* name) {
  return {QStringLiteral("qrc:/pages/NimbaraPages/%1.qml").arg(QLatin1String(name))};
}

}  // namespace

DesktopWindow::DesktopWindow() : ahead_(&engine_), firstPageAhead_(&engine_) {
  registerItems();
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
  engine_.rootContext()->setContextProperty(QStringLiteral("app"), &model);
  engine_.setInitialProperties(
      {{QStringLiteral("page"), viewName(enumName(options.page.value_or(DesktopPage::now)))},
       {QStringLiteral("theme"), options.theme ? viewName(enumName(*options.theme)) : QString()},
       {QStringLiteral("width"), size.width},
       {QStringLiteral("height"), size.height}});
  engine_.load(pageUrl("Main"));
  if (!engine_.rootObjects().isEmpty()) window_ = qobject_cast<QQuickWindow*>(engine_.rootObjects().front());
}

Result<void, std::string> DesktopWindow::savePicture(std::string const& file) const {
  QImage const picture = window_->grabWindow();
  if (picture.isNull() || !picture.save(QString::fromStdString(file), "PNG")) {
    return std::unexpected("the picture " + file + " cannot be written");
  }
  return {};
}

}  // namespace nimbara
