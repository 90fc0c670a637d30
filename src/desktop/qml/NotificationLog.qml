// The log of what was told and what was held back, newest first, a page at a time.
import QtQuick
import NimbaraPages

Card {
    id: card

    required property var notifications
    readonly property var words: notifications.words

    title: words.log ?? ""

    Column {
        width: parent.width
        spacing: 1.5 * Theme.space

        Text {
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
        Text {
            width: parent.width
            visible: card.notifications.log.count === 0 && card.notifications.now.logNote === ""
            text: card.words.logNone ?? ""
            horizontalAlignment: Text.AlignLeft
            color: Theme.muted
            font.pixelSize: Theme.body
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        Repeater {
            model: card.notifications.log
            Item {
                id: line
                required property string when
                required property string title
                required property string body
                required property string place
                required property string reason
                required property bool wasTold
                required property string sentence
                width: parent.width
                height: words.height
                Accessible.role: Accessible.ListItem
                Accessible.name: sentence

                Rectangle {
                    anchors.left: parent.left
                    y: 4
                    width: 4
                    height: parent.height - 8
                    radius: 2
                    color: line.wasTold ? Theme.accent : Theme.outline
                }
                Column {
                    id: words
                    anchors.right: parent.right
                    width: parent.width - 2 * Theme.space
                    spacing: 2
                    component Part: Text {
                        width: parent ? parent.width : 0
                        visible: text !== ""
                        wrapMode: Text.Wrap
                        horizontalAlignment: Text.AlignLeft
                        color: Theme.muted
                        font.pixelSize: Theme.small
                        Accessible.ignored: true
                    }
                    Part { text: line.when + (line.place !== "" ? " · " + line.place : "") }
                    Part {
                        text: line.title
                        color: line.wasTold ? Theme.text : Theme.muted
                        font.pixelSize: Theme.body
                        font.weight: Font.DemiBold
                    }
                    Part { text: line.body; maximumLineCount: 4; elide: Text.ElideRight; color: Theme.text }
                    Part { text: line.reason; font.italic: !line.wasTold }
                }
            }
        }
        PlainButton {
            visible: card.notifications.olderLines > 0
            text: (card.words.logMore ?? "") + " (" + card.notifications.olderLines + ")"
            onClicked: card.notifications.showMoreLog()
        }
    }
}
