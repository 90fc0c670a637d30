// The yardstick of bench/desktop_start.sh: the least window of the same toolkit and the same controls.
#include <QGuiApplication>
#include <QQmlApplicationEngine>

int main(int count, char** arguments) {
  QGuiApplication const application(count, arguments);
  QQmlApplicationEngine engine;
  engine.loadData(
      "import QtQuick.Controls.Basic\nApplicationWindow { visible: true; width: 1100; height: 760 }");
  return QGuiApplication::exec();
}
