// What is muted, until when, and a way to mute more.
import QtQuick
import NimbaraPages

Card {
    id: card

    required property var notifications
    readonly property var words: notifications.words
    readonly property var spans: [
        { value: "hour", text: words.forAnHour ?? "" },
        { value: "tomorrow", text: words.untilTomorrow ?? "" },
        { value: "forever", text: words.forEver ?? "" }
    ]

    title: words.mutes ?? ""

    Column {
        width: parent.width
        spacing: 1.5 * Theme.space

        PlainText {
            width: parent.width
            text: card.notifications.mutes.count > 0 ? card.words.mutesHint ?? "" : card.words.noMutes ?? ""
            wrapMode: Text.Wrap
            horizontalAlignment: Text.AlignLeft
            color: Theme.muted
            font.pixelSize: Theme.small
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        Repeater {
            model: card.notifications.mutes
            Item {
                id: muted
                required property string kind
                required property string title
                required property string until
                width: parent.width
                height: Math.max(names.height, again.height)
                Accessible.role: Accessible.ListItem
                Accessible.name: title + ", " + until
                Column {
                    id: names
                    anchors.left: parent.left
                    anchors.verticalCenter: parent.verticalCenter
                    width: parent.width - again.width - Theme.space
                    PlainText {
                        width: parent.width
                        text: muted.title
                        wrapMode: Text.Wrap
                        horizontalAlignment: Text.AlignLeft
                        color: Theme.text
                        font.pixelSize: Theme.body
                    }
                    PlainText {
                        width: parent.width
                        text: muted.until
                        wrapMode: Text.Wrap
                        horizontalAlignment: Text.AlignLeft
                        color: Theme.muted
                        font.pixelSize: Theme.small
                    }
                }
                PlainButton {
                    id: again
                    anchors.right: parent.right
                    anchors.verticalCenter: parent.verticalCenter
                    text: card.words.unmute ?? ""
                    explanation: text + ": " + muted.title
                    onClicked: card.notifications.unmute(muted.kind)
                }
            }
        }
        Flow {
            width: parent.width
            spacing: Theme.space
            Choice {
                id: kind
                title: card.words.whatToMute ?? ""
                model: card.notifications.kindsToMute
                onCountChanged: if (value === undefined && count > 0) value = valueAt(0)
                Component.onCompleted: countChanged()
                onChosen: wanted => value = wanted
                width: Math.min(260 * Theme.scale, parent.width)
            }
            Choice {
                id: span
                title: card.words.howLong ?? ""
                model: card.spans
                value: "hour"
                onChosen: wanted => value = wanted
            }
            PlainButton {
                text: card.words.mute ?? ""
                enabled: kind.value !== undefined
                onClicked: card.notifications.mute(kind.value, span.value)
            }
        }
    }
}
