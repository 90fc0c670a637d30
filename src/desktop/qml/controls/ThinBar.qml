// A scroll bar that shows while something scrolls.
import QtQuick
import QtQuick.Templates as T
import NimbaraPages
import NimbaraItems

T.ScrollBar {
    id: bar

    implicitWidth: 10
    implicitHeight: 10
    padding: 2
    minimumSize: 0.05
    Accessible.name: App.words.scrollBar
    Accessible.onIncreaseAction: increase()
    Accessible.onDecreaseAction: decrease()
    visible: policy !== T.ScrollBar.AlwaysOff

    contentItem: Rectangle {
        radius: 3
        color: Theme.muted
        opacity: bar.size < 1 && (bar.active || bar.policy === T.ScrollBar.AlwaysOn) ? 0.7 : 0
        Behavior on opacity { NumberAnimation { duration: 2 * Theme.quick } }
    }
}
