// What comes from outside and looks like markup is shown as it stands, and nobody fetches what it names.

#include "desktop/states/page_states.h"
#include "desktop/window/desktop_window.h"
#include "offscreen.h"
#include "page_checks.h"
#include "support/loopback_server.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QQmlEngine>
#include <QtTest/QTest>

namespace nimbara {
namespace {

using namespace nimbara::test;
using testing::IsEmpty;

/// Everything that a service or another program may have named, with a picture in its name.
std::shared_ptr<EngineSnapshot> markedUp(std::string const& markup) {
  WeatherState state = alertState();
  state.govAlerts.resize(3);
  for (WeatherAlert& alert : state.govAlerts) {
    alert.isGovAlert = true;
    alert.title = alert.message = markup;
    alert.description = alert.instruction = alert.areaDesc = alert.source = markup;
  }
  auto snapshot = snapshotOf(std::move(state), markup);
  for (SavedPlace& place : snapshot->places.places) {
    place.name = place.region = place.countryName = markup;
  }
  snapshot->place->name = snapshot->place->region = snapshot->place->country = markup;
  HazardsState hazards = hazardsOf(checkOf(*snapshot->place));
  hazards.quakes.data = {quakeOf("a", 6, snapshot->place->coordinate, std::chrono::minutes(5))};
  hazards.quakes.data.front().place = markup;
  SourceCoverage& coverage = hazards.official.coverage.front();
  coverage.state = CoverageState::unchecked;
  coverage.since = kNow;
  coverage.reason = ServiceFailure::of(ServiceFailure::Kind::unreadable, markup);
  coverage.service = markup;
  coverage.areas = {markup};
  snapshot->hazards = shared(std::move(hazards));
  return snapshot;
}

/// The classes of shown texts that would read what they are given as markup.
std::vector<std::string> markupReadersBelow(QQuickItem* root) {
  std::vector<std::string> readers;
  visitVisible(root, [&](QQuickItem* item) {
    if (!item->inherits("QQuickText")) return;
    constexpr int kPlainText = 0;
    std::string const name = item->metaObject()->className();
    // The one writes its own markup; the other shows our own words in an empty field.
    if (name.starts_with("MarkedText") || name.starts_with("QQuickPlaceholder")) return;
    if (item->property("textFormat").toInt() != kPlainText)
      readers.push_back(name + ": " + item->property("text").toString().toStdString());
  });
  return readers;
}

struct OutsideMarkup : OffscreenTest {
  LoopbackServer server{LoopbackServer::always(httpAnswer("", "", "404 Not Found"))};
};

TEST_F(OutsideMarkup, IsShownAsItStandsAndFetchesNothing) {
  DesktopModel model({Wording(), {}, [] { return kNow; }, {}}, {});
  model.show(markedUp("<img src=\"" + server.url("/x.png") + "\"><b>bold</b>"));
  for (DesktopPage const page : everyPage()) {
    DesktopOptions options;
    options.page = page;
    options.size = WindowSize{1000, 800};
    DesktopWindow const window(model, options);
    ASSERT_NE(window.window(), nullptr);
    ASSERT_TRUE(awaitParts(window.window()));
    EXPECT_THAT(markupReadersBelow(window.window()->contentItem()), IsEmpty()) << enumName(page);
    window.window()->grabWindow();
  }
  EXPECT_EQ(server.connections(), 0);
}

TEST_F(OutsideMarkup, OfTheOneTextThatWritesMarkupIsEscaped) {
  QQmlEngine engine;
  engine.addImportPath(QStringLiteral(":/pages"));
  QQmlComponent component(&engine, QUrl(QStringLiteral("qrc:/pages/NimbaraPages/MarkedText.qml")));
  std::unique_ptr<QObject> const text(
      component.createWithInitialProperties({{QStringLiteral("lead"), QStringLiteral("<i>")},
                                             {QStringLiteral("rest"), QStringLiteral("a & <b>")}}));
  ASSERT_NE(text, nullptr);
  EXPECT_EQ(text->property("text").toString().toStdString(), "<b>&lt;i&gt;</b>  a &amp; &lt;b&gt;");
}

TEST_F(OutsideMarkup, FindsNoNetworkInThePages) {
  DesktopModel model({Wording(), {}, [] { return kNow; }, {}}, {});
  model.show(snapshotOf(stateOf(mildWeek())));
  DesktopWindow const window(model, {});
  std::unique_ptr<QNetworkReply> const reply(
      qmlEngine(window.window())
          ->networkAccessManager()
          ->get(QNetworkRequest(QUrl(QString::fromStdString(server.url())))));
  ASSERT_TRUE(QTest::qWaitFor([&] { return reply->isFinished(); }));
  EXPECT_NE(reply->error(), QNetworkReply::NoError);
  EXPECT_EQ(server.connections(), 0);
}

}  // namespace
}  // namespace nimbara
