// Who notifies, whether the desktop shows it, a test, and a pause for everything.
import QtQuick
import NimbaraPages
import NimbaraItems

Card {
    id: card


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

        Line { text: App.notifications.now.notifier }
        Line {
            text: App.notifications.now.trouble
            color: Theme.warm
        }
        PlainButton {
            anchors.left: parent.left
            text: App.notifications.words.testButton
            onClicked: App.notifications.postTest()
        }
        Line {
            text: App.notifications.now.test
            color: Theme.muted
            font.pixelSize: Theme.small
        }
        Rectangle { width: parent.width; height: 1; color: Theme.outline }
        Line { text: App.notifications.words.pauseTitle }
        Line {
            text: App.notifications.now.isPaused ? App.notifications.now.pause : App.notifications.words.pauseHint
            color: App.notifications.now.isPaused ? Theme.accent : Theme.muted
            font.pixelSize: Theme.small
        }
        Flow {
            width: parent.width
            spacing: Theme.space
            PlainButton {
                visible: !App.notifications.now.isPaused
                text: App.notifications.words.forAnHour
                explanation: App.notifications.words.pauseTitle + ": " + text
                onClicked: App.notifications.pause("hour")
            }
            PlainButton {
                visible: !App.notifications.now.isPaused
                text: App.notifications.words.untilTomorrow
                explanation: App.notifications.words.pauseTitle + ": " + text
                onClicked: App.notifications.pause("tomorrow")
            }
            PlainButton {
                visible: App.notifications.now.isPaused
                text: App.notifications.words.resume
                onClicked: App.notifications.pause("")
            }
        }
    }
}
