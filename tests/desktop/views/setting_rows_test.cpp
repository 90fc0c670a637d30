#include "desktop/offscreen.h"
#include "desktop/states/states.h"
#include "desktop/window/models/desktop_model.h"
#include "desktop/window/page_items.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QtTest/QTest>
#include <memory>

namespace nimbara {
namespace {

using namespace nimbara::test;
using testing::IsEmpty;

constexpr char kRows[] = R"(
import QtQuick
import NimbaraPages
Window {
  id: all
  width: 360; height: 640; visible: true
  color: Theme.card
  property var asked: []
  Column {
    x: 16; width: parent.width - 32
    SettingSwitch {
      objectName: "switch"; width: parent.width
      title: "Rain begins"; explanation: "Told up to three hours before the first drops, once for each wet spell."
      onSwitched: on => { all.asked = all.asked.concat(String(on)); checked = on }
    }
    SettingNumber {
      objectName: "number"; width: parent.width
      title: "Strong wind"; explanation: "From this wind on."; unit: "km/h"
      value: 62; from: 10; to: 200; step: 5; decimals: 1
      onChanged: number => { all.asked = all.asked.concat(String(number)); value = number }
    }
    SettingChoice {
      objectName: "choice"; width: parent.width
      title: "Warnings from"; explanation: "Slighter ones are only listed."
      options: [{ value: "low", text: "Low" }, { value: "medium", text: "Medium" }, { value: "high", text: "High" }]
      value: "medium"
      onChosen: wanted => { all.asked = all.asked.concat(wanted); value = wanted }
    }
    SettingText {
      objectName: "text"; width: parent.width
      title: "Key of the service"; explanation: "Kept on this machine."; placeholder: "none"
      value: "abc"; secret: true
      onChanged: text => { all.asked = all.asked.concat(text); value = text }
    }
  }
})";

struct SettingRows : OffscreenTest {
  SettingRows() {
    enrolPageItems();
    setPageModel(engine, model);
    engine.addImportPath(QStringLiteral(":/pages"));
    engine.addImageProvider(QStringLiteral("sign"), new LineSigns);
    QQmlComponent component(&engine);
    component.setData(kRows, {});
    window.reset(qobject_cast<QQuickWindow*>(component.create()));
    EXPECT_TRUE(window) << component.errorString().toStdString();
    window->requestActivate();
    EXPECT_TRUE(QTest::qWaitForWindowActive(window.get()));
  }

  QQuickItem* row(char const* name) const {
    return window->findChild<QQuickItem*>(QString::fromLatin1(name));
  }
  /// The item of a row that takes the keys.
  static QQuickItem* controlOf(QQuickItem* item) {
    for (QQuickItem* const child : item->childItems()) {
      if (child->activeFocusOnTab()) return child;
      if (QQuickItem* const found = controlOf(child)) return found;
    }
    return nullptr;
  }
  void focus(char const* name) const { controlOf(row(name))->forceActiveFocus(Qt::TabFocusReason); }
  void press(Qt::Key key) const { QTest::keyClick(window.get(), key); }
  void type(std::string_view text) const {
    for (char const letter : text) QTest::keyClick(window.get(), letter);
  }
  void click(char const* name, QPointF const& share) const {
    QQuickItem const* const item = row(name);
    QPointF const at = item->mapToScene({share.x() * item->width(), share.y() * item->height()});
    QTest::mouseClick(window.get(), Qt::LeftButton, {}, at.toPoint());
  }
  std::vector<std::string> asked() const {
    std::vector<std::string> all;
    for (QVariant const& one : window->property("asked").toList())
      all.push_back(one.toString().toStdString());
    return all;
  }

  DesktopModel model{{Wording(), {}, [] { return kNow; }, {}}, {}};
  QQmlEngine engine;
  std::unique_ptr<QQuickWindow> window;
};

using Asked = std::vector<std::string>;

TEST_F(SettingRows, SwitchByKeyWordsAndControlOnceEach) {
  focus("switch");
  press(Qt::Key_Space);
  press(Qt::Key_Return);
  click("switch", {0.2, 0.5});
  click("switch", {0.95, 0.5});
  EXPECT_EQ(asked(), (Asked{"true", "false", "true", "false"}));
}

struct TypedRow {
  char const* name;
  std::string_view typed;
  Asked asked;
};

void PrintTo(TypedRow const& row, std::ostream* out) {
  *out << row.name;
}

struct TypedNumbers : SettingRows, testing::WithParamInterface<TypedRow> {};

TEST_P(TypedNumbers, AreBoundedAndUnderstood) {
  focus("number");
  type(GetParam().typed);
  press(Qt::Key_Return);
  EXPECT_EQ(asked(), GetParam().asked);
  EXPECT_EQ(controlOf(row("number"))->property("text").toDouble(),
            row("number")->property("value").toDouble());
}

INSTANTIATE_TEST_SUITE_P(Rows, TypedNumbers,
                         testing::Values(TypedRow{"point", "70.5", {"70.5"}},  //
                                         TypedRow{"comma", "70,5", {"70.5"}},  //
                                         TypedRow{"tooLow", "9", {"10"}},      //
                                         TypedRow{"tooHigh", "1e9", {"200"}},  //
                                         TypedRow{"same", "62", {}},           //
                                         TypedRow{"noNumber", "fast", {}},     //
                                         TypedRow{"rounded", "70.04", {"70"}}),
                         [](auto const& row) { return row.param.name; });

TEST_F(SettingRows, NumbersStepToTheNextMark) {
  focus("number");
  press(Qt::Key_Up);
  press(Qt::Key_Up);
  press(Qt::Key_Down);
  EXPECT_EQ(asked(), (Asked{"65", "70", "65"}));
}

TEST_F(SettingRows, AnEscapedNumberStays) {
  focus("number");
  type("9");
  press(Qt::Key_Escape);
  press(Qt::Key_Return);
  EXPECT_THAT(asked(), IsEmpty());
}

TEST_F(SettingRows, ChoicesAreMadeByKey) {
  focus("choice");
  press(Qt::Key_Down);
  EXPECT_EQ(asked(), (Asked{"high"}));
}

TEST_F(SettingRows, TextsAreTakenWhenTheyAreLeft) {
  focus("text");
  QTest::keyClick(window.get(), Qt::Key_A, Qt::ControlModifier);
  type(" secret ");
  focus("switch");
  EXPECT_EQ(asked(), (Asked{"secret"}));
}

TEST_F(SettingRows, AreNamedAndFitANarrowWindow) {
  for (char const* const name : {"switch", "number", "choice", "text"}) {
    EXPECT_FALSE(accessibleName(controlOf(row(name))).empty()) << name;
    QRectF const inside = row(name)->childrenRect();
    EXPECT_GE(inside.left(), 0) << name;
    EXPECT_LE(inside.right(), row(name)->width()) << name;
  }
  EXPECT_GT(colourCount(window->grabWindow()), 10);
  EXPECT_THAT(complaints(), IsEmpty());
}

}  // namespace
}  // namespace nimbara
