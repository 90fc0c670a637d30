// The days one below the other on one scale of temperatures; each opens to its hours. Below them the outlook,
// which is asked for while this is looked at.
import QtQuick
import NimbaraPages
import NimbaraItems

Card {
    id: list

    readonly property string place: App.now.place
    readonly property bool isLookedAt: visible && enabled
    onPlaceChanged: if (isLookedAt) App.lookAhead()
    onIsLookedAtChanged: if (isLookedAt) App.lookAhead()
    Component.onCompleted: if (isLookedAt) App.lookAhead()

    title: App.words.sevenDays

    Column {
        width: parent.width

        Column {
            width: parent.width
            Repeater {
                model: App.days
                DayRow { width: parent.width }
            }
        }
        PlainText {
            width: parent.width
            visible: text !== ""
            topPadding: Theme.space
            text: App.outlook.confidence
            horizontalAlignment: Text.AlignLeft
            wrapMode: Text.Wrap
            color: Theme.muted
            font.pixelSize: Theme.small
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        PlainText {
            width: parent.width
            visible: App.outlook.isShown
            topPadding: Theme.space
            text: App.outlook.title
            horizontalAlignment: Text.AlignLeft
            color: Theme.text
            font.pixelSize: Theme.body
            font.weight: Font.DemiBold
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }
        PlainText {
            width: parent.width
            visible: App.outlook.isShown
            text: App.outlook.notice
            horizontalAlignment: Text.AlignLeft
            wrapMode: Text.Wrap
            color: Theme.muted
            font.pixelSize: Theme.small
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        Column {
            width: parent.width
            visible: App.outlook.isShown
            Repeater {
                model: App.daysBeyond
                DayRow {
                    width: parent.width
                    hasHours: false
                }
            }
        }
    }
}
