// The sheet of a warning, as it stands when it has come in whole.
#include "desktop/states/page_states.h"
#include "desktop/window/desktop_window.h"
#include "offscreen.h"
#include "page_checks.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QtTest/QTest>

namespace nimbara {
namespace {

using namespace nimbara::test;
using testing::IsEmpty;

/// With all that an issuer may say.
WeatherAlert stormWarning() {
  WeatherAlert alert = alertOf(AlertSeverity::warning, "Sturmwarnung für die Küste");
  alert.isGovAlert = true;
  alert.source = "MeteoAlarm";
  alert.issuer = "Wetterdienst der Küstenländer";
  alert.areaDesc = "Nordküste, Inseln vor der Nordküste, Hafenstadt und Umland";
  alert.issued = kNow - std::chrono::hours(2);
  alert.onset = kNow - std::chrono::hours(1);
  alert.expires = kNow + std::chrono::hours(9);
  alert.colour = "orange";
  alert.text =
      "Es treten Sturmböen mit Geschwindigkeiten zwischen 75 km/h und 100 km/h aus westlicher Richtung auf. "
      "In Schauernähe sowie in exponierten Lagen muss mit orkanartigen Böen um 110 km/h gerechnet werden.\n\n"
      "Das Wasser steigt bis zum Abend um einen Meter über das mittlere Hochwasser.";
  alert.language = "de";
  alert.instruction =
      "Achten Sie auf herabstürzende Gegenstände. Halten Sie Abstand von Gerüsten und Bäumen.";
  alert.link = "https://warnings.example/1";
  alert.polygons = {{"59.2,9.6 61.1,8.9 61.4,11.2 60.3,12.4 59.0,11.6 59.2,9.6"}};
  alert.updates = 7;
  return alert;
}

struct SheetRow {
  WindowSize size;
  DesktopTheme theme;
};

void PrintTo(SheetRow const& row, std::ostream* out) {
  *out << row.size.width << "px, " << enumName(row.theme);
}

struct WarningSheets : OffscreenTest, testing::WithParamInterface<SheetRow> {};

TEST_P(WarningSheets, AreReadable) {
  auto const& [size, theme] = GetParam();
  DesktopModel model({Wording(), {}, [] { return kNow; }, {}}, {});
  WeatherState state = stateOf(mildWeek());
  state.govAlerts = {stormWarning(), alertOf(AlertSeverity::advisory, "Fog")};
  std::string const id = state.govAlerts.front().id.text();
  auto const snapshot = snapshotOf(std::move(state));
  snapshot->place = Place{{60.1, 10.2}, "Testville", "Norway", "Region"};
  snapshot->settings =
      std::make_shared<SettingsState const>(settingsWith({{"desktop_reducedMotion", std::string("on")}}));
  model.show(snapshot);
  DesktopOptions options;
  options.size = size;
  options.theme = theme;
  DesktopWindow const window(model, options);
  ASSERT_TRUE(QTest::qWaitFor([&] { return window.window()->property("hasDrawn").toBool(); }));
  model.setOpenAlert(QString::fromStdString(id));
  QQuickItem* const root = window.window()->contentItem();
  auto const isRead = [&] {
    auto const names = namesBelow(root, QAccessible::Heading);
    return std::ranges::count(names, "Sturmwarnung für die Küste") == 1;
  };
  ASSERT_TRUE(QTest::qWaitFor(isRead));
  keepPicture(settled(window.window()), "openWarning", DesktopPage::now, theme, size);
  EXPECT_THAT(namelessBelow(root), IsEmpty());
  EXPECT_THAT(cutOffBelow(root), IsEmpty());
  EXPECT_THAT(complaints(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Sizes, WarningSheets,
    testing::Values(SheetRow{{360, 640}, DesktopTheme::light}, SheetRow{{360, 640}, DesktopTheme::dark},
                    SheetRow{{1100, 760}, DesktopTheme::light}, SheetRow{{1100, 760}, DesktopTheme::dark},
                    SheetRow{{1280, 800}, DesktopTheme::light}, SheetRow{{1280, 800}, DesktopTheme::dark}),
    [](auto const& row) {
      return std::string(enumName(row.param.theme)) + std::to_string(row.param.size.width);
    });

}  // namespace
}  // namespace nimbara
