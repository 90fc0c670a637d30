// Who notifies, whether the desktop shows it, a test, and a pause for everything.
import QtQuick
import NimbaraPages

Card {
    id: card

    required property var notifications
    readonly property var words: notifications.words
    readonly property var now: notifications.now

    Column {
        width: parent.width
        spacing: 1.5 * Theme.space

        component Line: PlainText {
            width: parent ? parent.width : 0
            visible: text !== ""
            wrapMode: Text.Wrap
            horizontalAlignment: Text.AlignLeft
            color: Theme.text
            font.pixelSize: Theme.body
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }

        Line { text: card.now.notifier }
        Line {
            text: card.now.trouble
            color: Theme.warm
        }
        PlainButton {
            anchors.left: parent.left
            text: card.words.testButton ?? ""
            onClicked: card.notifications.postTest()
        }
        Line {
            text: card.now.test
            color: Theme.muted
            font.pixelSize: Theme.small
        }
        Rectangle { width: parent.width; height: 1; color: Theme.outline }
        Line { text: card.words.pauseTitle ?? "" }
        Line {
            text: card.now.isPaused ? card.now.pause : card.words.pauseHint ?? ""
            color: card.now.isPaused ? Theme.accent : Theme.muted
            font.pixelSize: Theme.small
        }
        Flow {
            width: parent.width
            spacing: Theme.space
            PlainButton {
                visible: !card.now.isPaused
                text: card.words.forAnHour ?? ""
                explanation: card.words.pauseTitle + ": " + text
                onClicked: card.notifications.pause("hour")
            }
            PlainButton {
                visible: !card.now.isPaused
                text: card.words.untilTomorrow ?? ""
                explanation: card.words.pauseTitle + ": " + text
                onClicked: card.notifications.pause("tomorrow")
            }
            PlainButton {
                visible: card.now.isPaused
                text: card.words.resume ?? ""
                onClicked: card.notifications.pause("")
            }
        }
    }
}
