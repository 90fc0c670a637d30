#include "desktop/states/page_states.h"
#include "desktop/states/settings_states.h"
#include "desktop/window/desktop_window.h"
#include "page_checks.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QColor>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QtTest/QTest>
#include <algorithm>
#include <cmath>

namespace nimbara {
namespace {

using namespace nimbara::test;
using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

std::shared_ptr<EngineSnapshot> withSettings(SettingValues stored) {
  auto snapshot = snapshotOf(stateOf(mildWeek()));
  snapshot->settings = std::make_shared<SettingsState const>(settingsWith(std::move(stored)));
  return snapshot;
}

/// A window that shows a page of a mild week with settings.
class Shown {
 public:
  Shown(DesktopPage page, WindowSize size, SettingValues settings = {})
      : model_({Wording(), {}, [] { return kNow; }, {}}, {}) {
    model_.show(withSettings(std::move(settings)));
    DesktopOptions options;
    options.page = page;
    options.size = size;
    options.theme = DesktopTheme::light;
    window_.emplace(model_, options);
    EXPECT_TRUE(awaitParts(window_->window()));
    picture_ = window_->window()->grabWindow();
  }

  QQuickItem* root() const { return window_->window()->contentItem(); }
  QImage const& picture() const { return picture_; }
  DesktopModel& model() { return model_; }

 private:
  DesktopModel model_;
  std::optional<DesktopWindow> window_;
  QImage picture_;
};

using Accessibility = OffscreenTest;

TEST_F(Accessibility, GivesEveryPageAHeading) {
  for (DesktopPage const page : everyPage()) {
    Shown const shown(page, {1280, 800});
    EXPECT_THAT(namesBelow(shown.root(), QAccessible::Heading), Not(IsEmpty())) << enumName(page);
  }
}

TEST_F(Accessibility, ReadsForecastRowsAsSentences) {
  Shown const now(DesktopPage::now, {1280, 800});
  std::vector<std::string> hours;
  ASSERT_TRUE(QTest::qWaitFor([&] {
    hours = namesBelow(now.root(), QAccessible::ListItem);
    return !hours.empty();
  }));
  EXPECT_THAT(hours.front(), HasSubstr("°"));
  EXPECT_THAT(hours.front(), HasSubstr(", "));
  for (DesktopPage const page : {DesktopPage::now, DesktopPage::hours}) {
    Shown const shown(page, {1280, 800});
    EXPECT_TRUE(QTest::qWaitFor([&] {
      auto const names = namesBelow(shown.root(), QAccessible::Button);
      return std::ranges::any_of(names, [](auto const& name) { return name.contains("high 20°"); });
    })) << enumName(page);
  }
}

TEST_F(Accessibility, ShowsTextsWholeAtTwiceTheirSize) {
  for (DesktopPage const page :
       {DesktopPage::now, DesktopPage::hours, DesktopPage::places, DesktopPage::settings}) {
    for (WindowSize const size : {WindowSize{360, 740}, WindowSize{1280, 800}}) {
      Shown const shown(page, size, {{"desktop_textSize", std::int64_t{200}}});
      keepPicture(shown.picture(), "twice", page, DesktopTheme::light, size);
      EXPECT_THAT(cutOffBelow(shown.root()), IsEmpty()) << enumName(page) << " " << size.width;
    }
  }
  EXPECT_THAT(complaints(), IsEmpty());
}

/// As long as it lives the toolkit reads from right to left.
struct RightToLeft {
  RightToLeft() { QGuiApplication::setLayoutDirection(Qt::RightToLeft); }
  ~RightToLeft() { QGuiApplication::setLayoutDirection(Qt::LeftToRight); }
};

/// Where the middle of what has a name lies in the window, 0-1 from its left; -1 for nothing of that name.
double middleOf(QQuickItem* root, std::string const& name) {
  double middle = -1;
  visitVisible(root, [&](QQuickItem* item) {
    if (accessibleName(item) == name)
      middle = item->mapToScene({item->width() / 2, 0}).x() / root->window()->width();
  });
  return middle;
}

TEST_F(Accessibility, IsMirroredForThoseWhoReadFromTheRight) {
  for (DesktopPage const page : everyPage()) {
    double const before = middleOf(Shown(page, {1280, 800}).root(), "Now");
    RightToLeft const direction;
    Shown const shown(page, {1280, 800});
    keepPicture(shown.picture(), "mirrored", page, DesktopTheme::light, {1280, 800});
    EXPECT_NEAR(middleOf(shown.root(), "Now"), 1 - before, 0.01) << enumName(page);
  }
  RightToLeft const direction;
  Shown const settings(DesktopPage::settings, {1280, 800});
  EXPECT_LT(middleOf(settings.root(), "Text size: 100\u00A0%"), 0.5);
  EXPECT_THAT(complaints(), IsEmpty());
}

/// The palette as the pages see it.
class Palette {
 public:
  Palette() : component_(&engine_) {
    engine_.addImportPath(QStringLiteral(":/pages"));
    component_.setData(
        "import QtQuick\nimport NimbaraPages\n"
        "QtObject { property var theme: Theme; function alert(level) { return Theme.alertColour(level); } }",
        QUrl());
    object_.reset(component_.create());
    theme_ = object_->property("theme").value<QObject*>();
  }

  void choose(char const* theme) { theme_->setProperty("choice", QString::fromLatin1(theme)); }
  void strengthen(bool on) { theme_->setProperty("contrasting", on); }
  QColor colour(char const* name) const {
    QVariant const value = theme_->property(name);
    EXPECT_TRUE(value.isValid()) << name;
    return value.value<QColor>();
  }
  QColor alert(char const* level) const {
    QVariant colour;
    QMetaObject::invokeMethod(object_.get(), "alert", Q_RETURN_ARG(QVariant, colour),
                              Q_ARG(QVariant, QString::fromLatin1(level)));
    return QColor(colour.toString());
  }
  QObject* theme() const { return theme_; }

 private:
  QQmlEngine engine_;
  QQmlComponent component_;
  std::unique_ptr<QObject> object_;
  QObject* theme_ = nullptr;
};

/// As WCAG 2 defines it.
double luminance(QColor const& colour) {
  auto const linear = [](double part) {
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

double contrast(QColor const& one, QColor const& other) {
  auto const [darker, lighter] = std::minmax({luminance(one), luminance(other)});
  return (lighter + 0.05) / (darker + 0.05);
}

constexpr double kReadable = 4.5;     // for texts
constexpr double kDiscernible = 3.0;  // for curves, signs and large texts
constexpr char const* kThemes[] = {"light", "dark"};
constexpr char const* kSurfaces[] = {"page", "card", "raised"};

TEST_F(Accessibility, HasReadableTextsInBothThemes) {
  Palette palette;
  for (char const* const theme : kThemes) {
    palette.choose(theme);
    for (char const* const ink : {"text", "muted", "accent", "danger"}) {
      for (char const* const surface : kSurfaces) {
        EXPECT_GE(contrast(palette.colour(ink), palette.colour(surface)), kReadable)
            << theme << ": " << ink << " on " << surface;
      }
    }
    for (char const* const level : {"info", "advisory", "warning", "critical"}) {
      EXPECT_GE(contrast(palette.colour("text"), palette.alert(level)), kReadable) << theme << " " << level;
    }
    EXPECT_GE(contrast(palette.colour("accentText"), palette.colour("accent")), kReadable) << theme;
  }
}

constexpr double kStrong = 7.0;  // for texts in high contrast

TEST_F(Accessibility, HasStrongTextsAndFramesInHighContrast) {
  Palette palette;
  for (char const* const theme : kThemes) {
    palette.choose(theme);
    EXPECT_LT(contrast(palette.colour("outline"), palette.colour("card")), kDiscernible);
    palette.strengthen(true);
    for (char const* const surface : kSurfaces) {
      for (char const* const ink : {"text", "muted", "accent", "danger"}) {
        EXPECT_GE(contrast(palette.colour(ink), palette.colour(surface)), kStrong)
            << theme << ": " << ink << " on " << surface;
      }
      EXPECT_GE(contrast(palette.colour("outline"), palette.colour(surface)), kDiscernible) << theme;
    }
    palette.strengthen(false);
  }
}

TEST_F(Accessibility, IsShownInHighContrast) {
  for (DesktopPage const page : everyPage()) {
    Shown const usual(page, {1280, 800});
    Shown const shown(page, {1280, 800}, {{"desktop_contrast", std::string("on")}});
    keepPicture(shown.picture(), "contrast", page, DesktopTheme::light, {1280, 800});
    EXPECT_NE(shown.picture(), usual.picture()) << enumName(page);
  }
  EXPECT_THAT(complaints(), IsEmpty());
}

TEST_F(Accessibility, HasDiscernibleCurvesInBothThemes) {
  Palette palette;
  for (char const* const theme : kThemes) {
    palette.choose(theme);
    for (char const* const ink : {"sun", "rain", "warm", "cold", "felt", "wind", "air", "cloud"}) {
      EXPECT_GE(contrast(palette.colour(ink), palette.colour("card")), kDiscernible) << theme << ": " << ink;
    }
    EXPECT_GE(contrast(palette.colour("rain"), palette.colour("card")), kReadable)
        << theme << ", small texts";
  }
}

TEST_F(Accessibility, MovesNothingForThoseWhoWantCalm) {
  Palette palette;
  EXPECT_GT(palette.theme()->property("quick").toInt(), 0);
  palette.theme()->setProperty("calm", true);
  EXPECT_EQ(palette.theme()->property("quick").toInt(), 0);
}

TEST_F(Accessibility, FollowsTheSettingsWhileItIsOpen) {
  Shown shown(DesktopPage::settings, {1280, 800});
  EXPECT_THAT(namesBelow(shown.root(), QAccessible::ComboBox), Contains("Wind: Automatic (km/h)"));
  auto changed = withSettings({{"language", std::string("pt")}, {"windUnit", std::string("knots")}});
  Wording wording;
  wording.texts = std::make_shared<Texts>(Texts::load("pt"));
  wording.units.wind = WindUnit::knots;
  changed->wording = std::make_shared<Wording const>(wording);
  shown.model().show(changed);
  auto const names = namesBelow(shown.root(), QAccessible::ComboBox);
  EXPECT_THAT(names, Contains("Vento: knots"));
  EXPECT_THAT(names, Contains("Idioma: Português"));
  EXPECT_THAT(namesBelow(shown.root(), QAccessible::Heading), Contains("Definições"));
  EXPECT_THAT(complaints(), IsEmpty());
}

}  // namespace
}  // namespace nimbara
