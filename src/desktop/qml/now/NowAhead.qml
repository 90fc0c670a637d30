// The hours and days ahead, for the page of the present: where there is room for all days side by side, the one that is
// chosen shows its hours above.
import QtQuick
import NimbaraPages
import NimbaraItems

Column {
    id: ahead

    readonly property bool isWide: width >= 640 * Theme.scale
    readonly property bool showsDay: isWide && App.openDayTitle !== ""

    spacing: 2 * Theme.space
    visible: App.hours.count > 0

    HourStrip {
        id: hours
        width: ahead.width
        title: ahead.showsDay ? App.openDayTitle : App.words.next24
        hours: ahead.showsDay ? App.dayHours : App.hours

        PlainButton {
            parent: hours
            visible: ahead.showsDay
            anchors.right: parent.right
            anchors.rightMargin: hours.padding
            y: Theme.space
            text: App.words.next24
            onClicked: App.openDay = -1
        }
    }
    Loader {
        width: ahead.width
        source: ahead.isWide ? "DayStrip.qml" : "DayList.qml"
    }
}
