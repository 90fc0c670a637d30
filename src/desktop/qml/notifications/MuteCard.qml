// What is muted, until when, and a way to mute more.
import QtQuick
import NimbaraPages
import NimbaraItems

Card {
    id: card

    readonly property var spans: [
        { value: "hour", text: App.notifications.words.forAnHour },
        { value: "tomorrow", text: App.notifications.words.untilTomorrow },
        { value: "forever", text: App.notifications.words.forEver }
    ]

    title: App.notifications.words.mutes

    Column {
        width: parent.width
        spacing: 1.5 * Theme.space

        PlainText {
            width: parent.width
            text: App.notifications.mutes.count > 0 ? App.notifications.words.mutesHint : App.notifications.words.noMutes
            wrapMode: Text.Wrap
            horizontalAlignment: Text.AlignLeft
            color: Theme.muted
            font.pixelSize: Theme.small
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        Repeater {
            model: App.notifications.mutes
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
                    text: App.notifications.words.unmute
                    explanation: text + ": " + muted.title
                    onClicked: App.notifications.unmute(muted.kind)
                }
            }
        }
        Flow {
            width: parent.width
            spacing: Theme.space
            Choice {
                id: kind
                title: App.notifications.words.whatToMute
                model: App.notifications.kindsToMute
                onCountChanged: if (value === undefined && count > 0) value = valueAt(0)
                Component.onCompleted: countChanged()
                onChosen: wanted => value = wanted
                width: Math.min(260 * Theme.scale, parent.width)
            }
            Choice {
                id: span
                title: App.notifications.words.howLong
                model: card.spans
                value: "hour"
                onChosen: wanted => value = wanted
            }
            PlainButton {
                text: App.notifications.words.mute
                enabled: kind.value !== undefined
                onClicked: App.notifications.mute(kind.value, span.value)
            }
        }
    }
}
