#include "desktop/window/page_items.h"

#include "desktop/window/accessibility/accessible_items.h"
#include "desktop/window/accessibility/reading_order.h"
#include "desktop/window/models/desktop_model.h"
#include "desktop/window/painting/board.h"
#include "desktop/window/painting/flat_globe.h"
#include "desktop/window/painting/kp_items.h"
#include "desktop/window/painting/map/map_item.h"
#include "desktop/window/painting/map/quake_map_item.h"
#include "desktop/window/painting/map/warning_map_item.h"
#include "desktop/window/painting/meteogram_item.h"
#include "desktop/window/painting/sky_items.h"
#include "desktop/window/painting/sky_scenery.h"
#include "desktop/window/painting/year_item.h"

#include <QQmlEngine>
#include <array>
#include <tuple>

namespace nimbara {

namespace {

constexpr char kModelProperty[] = "pageModel";

template <class Item>
PageItem pageItem(char const* name) {
  return {name, &Item::staticMetaObject,
          [](char const* known) { qmlRegisterType<Item>(kItemsModule, 1, 0, known); }};
}

QObject* modelOf(QQmlEngine* engine, QJSEngine* /*scripts*/) {
  auto* const model = engine->property(kModelProperty).value<QObject*>();
  QQmlEngine::setObjectOwnership(model, QQmlEngine::CppOwnership);
  return model;
}

}  // namespace

std::span<PageItem const> pageItems() {
  static std::array const kItems{
      pageItem<WindCompass>("WindCompass"),
      pageItem<SunArc>("SunArc"),
      pageItem<MoonDisc>("MoonDisc"),
      pageItem<SkyScenery>("SkyScenery"),
      pageItem<MeteogramItem>("MeteogramItem"),
      pageItem<FlatGlobe>("FlatGlobe"),
      pageItem<MapItem>("MapItem"),
      pageItem<QuakeMapItem>("QuakeMapItem"),
      pageItem<KpGauge>("KpGauge"),
      pageItem<KpBarsItem>("KpBarsItem"),
      pageItem<ReadingOrder>("ReadingOrder"),
      pageItem<WarningMapItem>("WarningMapItem"),
      pageItem<YearItem>("YearItem"),
      pageItem<Board>("Board"),
  };
  return kItems;
}

void enrolPageItems() {
  static bool const kOnce = [] {
    for (PageItem const& item : pageItems()) item.enrol(item.name);
    enrolAccessibleItems();
    qmlRegisterSingletonType<DesktopModel>(kItemsModule, 1, 0, "App", modelOf);
    qmlRegisterAnonymousType<AirModel>(kItemsModule, 1);
    qmlRegisterAnonymousType<GlobeModel>(kItemsModule, 1);
    qmlRegisterAnonymousType<HazardsModel>(kItemsModule, 1);
    qmlRegisterAnonymousType<MapModel>(kItemsModule, 1);
    qmlRegisterAnonymousType<NotificationsModel>(kItemsModule, 1);
    qmlRegisterAnonymousType<SettingsModel>(kItemsModule, 1);
    qmlRegisterAnonymousType<SourcesModel>(kItemsModule, 1);
    qmlRegisterAnonymousType<SpeechModel>(kItemsModule, 1);
    qmlRegisterAnonymousType<StationModel>(kItemsModule, 1);
    qmlRegisterAnonymousType<FirstModel>(kItemsModule, 1);
    qmlRegisterAnonymousType<SwitcherModel>(kItemsModule, 1);
    qmlRegisterAnonymousType<RecordModel>(kItemsModule, 1);
    qmlRegisterAnonymousType<RecordListModel>(kItemsModule, 1);
    return true;
  }();
  std::ignore = kOnce;
}

void setPageModel(QQmlEngine& engine, DesktopModel& model) {
  engine.setProperty(kModelProperty, QVariant::fromValue<QObject*>(&model));
}

}  // namespace nimbara
