// The log of what was told and what was held back, newest first, a page at a time.
import QtQuick
import NimbaraPages
import NimbaraItems

Card {
    id: card


    property string choosing  // the entry whose like is to be muted

    title: App.notifications.words.log

    Column {
        width: parent.width
        spacing: 2 * Theme.space

        PlainText {
            width: parent.width
            text: App.notifications.now.logNote || (App.notifications.words.logHint)
            wrapMode: Text.Wrap
            horizontalAlignment: Text.AlignLeft
            color: Theme.muted
            font.pixelSize: Theme.small
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        Choice {
            anchors.left: parent.left
            visible: App.notifications.now.logNote === ""
            title: App.notifications.words.logShow
            model: [
                { value: "all", text: App.notifications.words.logAll },
                { value: "told", text: App.notifications.words.logTold },
                { value: "held", text: App.notifications.words.logHeld }
            ]
            value: App.notifications.logFilter
            onChosen: filter => App.notifications.logFilter = filter
        }
        PlainText {
            width: parent.width
            visible: App.notifications.log.count === 0 && App.notifications.now.logNote === ""
            text: App.notifications.words.logNone
            wrapMode: Text.Wrap
            horizontalAlignment: Text.AlignLeft
            color: Theme.muted
            font.pixelSize: Theme.body
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        Repeater {
            model: App.notifications.log
            LogEntry {
                width: parent.width
                isChoosing: card.choosing === key
                onChoose: card.choosing = isChoosing ? "" : key
                onChosen: card.choosing = ""
            }
        }
        PlainButton {
            anchors.left: parent.left
            visible: App.notifications.olderLines > 0
            text: (App.notifications.words.logMore) + " (" + App.notifications.olderLines + ")"
            onClicked: App.notifications.showMoreLog()
        }
    }
}
