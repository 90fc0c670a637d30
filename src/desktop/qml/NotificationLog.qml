// The log of what was told and what was held back, newest first, a page at a time.
import QtQuick
import NimbaraPages

Card {
    id: card

    required property var notifications
    readonly property var words: notifications.words

    property string choosing  // the entry whose like is to be muted

    title: words.log ?? ""

    Column {
        width: parent.width
        spacing: 2 * Theme.space

        PlainText {
            width: parent.width
            text: card.notifications.now.logNote || (card.words.logHint ?? "")
            wrapMode: Text.Wrap
            horizontalAlignment: Text.AlignLeft
            color: Theme.muted
            font.pixelSize: Theme.small
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        Choice {
            anchors.left: parent.left
            visible: card.notifications.now.logNote === ""
            title: card.words.logShow ?? ""
            model: [
                { value: "all", text: card.words.logAll ?? "" },
                { value: "told", text: card.words.logTold ?? "" },
                { value: "held", text: card.words.logHeld ?? "" }
            ]
            value: card.notifications.logFilter
            onChosen: filter => card.notifications.logFilter = filter
        }
        PlainText {
            width: parent.width
            visible: card.notifications.log.count === 0 && card.notifications.now.logNote === ""
            text: card.words.logNone ?? ""
            wrapMode: Text.Wrap
            horizontalAlignment: Text.AlignLeft
            color: Theme.muted
            font.pixelSize: Theme.body
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        Repeater {
            model: card.notifications.log
            LogEntry {
                width: parent.width
                notifications: card.notifications
                isChoosing: card.choosing === key
                onChoose: card.choosing = isChoosing ? "" : key
                onChosen: card.choosing = ""
            }
        }
        PlainButton {
            anchors.left: parent.left
            visible: card.notifications.olderLines > 0
            text: (card.words.logMore ?? "") + " (" + card.notifications.olderLines + ")"
            onClicked: card.notifications.showMoreLog()
        }
    }
}
