#include "desktop/states/page_states.h"
#include "desktop/states/station_states.h"
#include "desktop/window/desktop_window.h"
#include "page_checks.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QFontDatabase>
#include <QtTest/QTest>

namespace nimbara {
namespace {

using namespace nimbara::test;
using testing::IsEmpty;

/// Of everything a little: weather, warnings, earthquakes, notifications, settings, the current location.
std::shared_ptr<EngineSnapshot> lived(std::shared_ptr<Texts const> const& texts) {
  auto snapshot = withAir(uncheckedHazards(), airOf);
  WeatherState state = *snapshot->weather;
  state.govAlerts = {alertOf(AlertSeverity::warning, std::string(texts->text("desktop.alerts")))};
  state.govAlerts.front().isGovAlert = true;
  state.nowcast = rainState().nowcast;
  snapshot->weather = std::make_shared<WeatherState const>(std::move(state));
  HazardsState hazards = *snapshot->hazards;
  for (int i = 0; i < 12; ++i) {
    hazards.quakes.data.push_back(
        quakeOf(std::to_string(i), 3 + i % 4, {i * 7.0, i * 11.0}, std::chrono::minutes(40 * i)));
  }
  hazards.kp.data.now = 5.33;
  snapshot->hazards = shared(std::move(hazards));
  NotificationsState notifications = crowdedState();
  notifications.log.resize(4);
  snapshot->notifications = std::make_shared<NotificationsState const>(std::move(notifications));
  SettingsState settings = troubledSettings();
  settings.wish.reducesMotion = true;  // pictures are finished at once
  snapshot->settings = std::make_shared<SettingsState const>(std::move(settings));
  snapshot->places.offersCurrentLocation = true;
  snapshot->location.phase = LocationState::Phase::denied;
  Wording wording;
  wording.texts = texts;
  snapshot->wording = std::make_shared<Wording const>(wording);
  return snapshot;
}

/// Texts whose lines have no room in the height that they are given, or that reach beyond the card or button
/// around them.
std::vector<std::string> overflowingBelow(QQuickItem* root) {
  constexpr double kRounding = 1.5;
  std::vector<std::string> overflowing;
  visitVisible(root, [&](QQuickItem* item) {
    std::string const text = item->property("text").toString().toStdString();
    if (!item->inherits("QQuickText") || text.empty() || goesSideways(item)) return;
    bool const isTooHigh = item->property("contentHeight").toDouble() > item->height() + kRounding;
    QQuickItem* card = item->parentItem();
    while (card != nullptr && !card->inherits("QQuickRectangle") && !card->inherits("QQuickAbstractButton"))
      card = card->parentItem();
    double const left = card == nullptr ? 0 : item->mapToItem(card, {0, 0}).x();
    bool const isBeyond =
        card != nullptr && (left < -kRounding || left + item->width() > card->width() + kRounding);
    if (isTooHigh || isBeyond) overflowing.push_back(text);
  });
  return overflowing;
}

/// Texts beside each other of which one covers a part of the other.
std::vector<std::string> coveredBelow(QQuickItem* root) {
  constexpr double kRounding = 1.5;
  auto const painted = [](QQuickItem* item) {
    double const wide = std::min(item->property("contentWidth").toDouble(), item->width());
    double const high = item->property("contentHeight").toDouble();
    int const across = item->property("effectiveHorizontalAlignment").toInt();
    int const down = item->property("verticalAlignment").toInt();
    double const x = across == Qt::AlignRight     ? item->width() - wide
                     : across == Qt::AlignHCenter ? (item->width() - wide) / 2
                                                  : 0;
    double const y = down == Qt::AlignVCenter  ? (item->height() - high) / 2
                     : down == Qt::AlignBottom ? item->height() - high
                                               : 0;
    return QRectF(item->x() + x, item->y() + y, wide, high)
        .adjusted(kRounding, kRounding, -kRounding, -kRounding);
  };
  std::vector<std::string> covered;
  visitVisible(root, [&](QQuickItem* parent) {
    std::vector<QQuickItem*> texts;
    for (QQuickItem* const child : parent->childItems()) {
      bool const isSeen = child->isVisible() && child->opacity() > 0;
      if (isSeen && child->inherits("QQuickText") && !child->property("text").toString().isEmpty())
        texts.push_back(child);
    }
    for (std::size_t i = 0; i < texts.size(); ++i) {
      for (std::size_t k = i + 1; k < texts.size(); ++k) {
        if (painted(texts[i]).intersects(painted(texts[k])))
          covered.push_back(texts[i]->property("text").toString().toStdString() + " | " +
                            texts[k]->property("text").toString().toStdString());
      }
    }
  });
  return covered;
}

std::vector<std::string> codes() {
  std::vector<std::string> all;
  for (Texts::Language const& language : Texts::languages()) all.emplace_back(language.code);
  return all;
}

/// While the browser is waited for, after a linking that failed.
StationDesk waitingDesk() {
  StationDesk desk = stationDesk();
  desk.task = StationTask::consent;
  desk.consentUrl = "https://api.netatmo.com/oauth2/authorize?client_id=" + std::string(24, '5') +
                    "&redirect_uri=http%3A%2F%2Flocalhost%3A8917%2Fnimbara&scope=read_station&state=1";
  desk.end = LinkEnd{.outcome = LinkEnd::Outcome::portTaken, .reason = "address already in use"};
  return desk;
}

struct Languages : OffscreenTest, testing::WithParamInterface<std::string> {
  void expectWhole(DesktopWindow const& window, DesktopPage page, WindowSize size) const {
    QCoreApplication::processEvents();
    EXPECT_TRUE(awaitParts(window.window()));
    QQuickItem* const root = window.window()->contentItem();
    openAll(root);
    QCoreApplication::processEvents();
    keepPicture(window.window()->grabWindow(), "language-" + GetParam(), page, DesktopTheme::light, size);
    EXPECT_THAT(cutOffBelow(root), IsEmpty()) << enumName(page) << " " << size.width;
    EXPECT_THAT(overflowingBelow(root), IsEmpty()) << enumName(page) << " " << size.width;
    EXPECT_THAT(coveredBelow(root), IsEmpty()) << enumName(page) << " " << size.width;
  }
};

TEST_P(Languages, ShowEveryPageWhole) {
  auto const texts = std::make_shared<Texts const>(Texts::load(GetParam()));
  Wording wording;
  wording.texts = texts;
  auto const snapshot = lived(texts);
  for (WindowSize const size : {WindowSize{360, 3600}, WindowSize{1280, 2400}}) {
    DesktopModel model({wording, {}, [] { return kNow; }, {}}, {});
    model.show(snapshot);
    DesktopOptions options;
    options.theme = DesktopTheme::light;
    options.size = size;
    DesktopWindow const window(model, options);
    ASSERT_TRUE(awaitParts(window.window()));
    for (DesktopPage const page : everyPage()) {
      window.window()->setProperty("page", viewName(enumName(page)));
      expectWhole(window, page, size);
    }
    window.window()->setProperty("page", QStringLiteral("station"));
    for (StationDesk const& desk : {stationDesk(), waitingDesk()}) {
      model.station()->take(desk);
      expectWhole(window, DesktopPage::station, size);
    }
  }
  EXPECT_THAT(complaints(), IsEmpty());
}

/// A warning's severity has the same name wherever it stands.
TEST_P(Languages, HaveOneVocabularyOfSeverity) {
  auto const texts = Texts::load(GetParam());
  for (auto const& [severity, level] :
       {std::pair("info", "low"), {"advisory", "medium"}, {"warning", "high"}, {"critical", "critical"}}) {
    auto const name = texts.text(std::string("severity.") + severity);
    EXPECT_EQ(texts.text(std::string("explain.level.") + level), name);
    EXPECT_EQ(texts.text(std::string("desktop.notifications.level.") + level), name);
  }
}

/// Boxes in place of letters would be whole as well.
TEST_P(Languages, HaveFontsForTheirLetters) {
  QFontDatabase::WritingSystem const needed = GetParam() == "ja"   ? QFontDatabase::Japanese
                                              : GetParam() == "zh" ? QFontDatabase::SimplifiedChinese
                                                                   : QFontDatabase::Latin;
  EXPECT_FALSE(QFontDatabase::families(needed).isEmpty());
}

INSTANTIATE_TEST_SUITE_P(All, Languages, testing::ValuesIn(codes()),
                         [](auto const& row) { return row.param; });

}  // namespace
}  // namespace nimbara
