// What is known of the chosen satellite.
import QtQuick
import NimbaraPages
import NimbaraItems

Rectangle {
    id: card

    signal closed

    height: content.height + 3 * Theme.space
    radius: Theme.radius
    color: Qt.alpha(Theme.card, 0.96)
    border.width: 1
    border.color: Theme.outline
    Accessible.role: Accessible.Grouping
    Accessible.name: App.globe.card.sentence

    MouseArea { anchors.fill: parent }

    Column {
        id: content
        x: 2 * Theme.space
        y: 1.5 * Theme.space
        width: parent.width - 4 * Theme.space
        spacing: Theme.space

        Item {
            width: parent.width
            height: Math.max(names.height, close.height)
            Rectangle {
                id: dot
                anchors.verticalCenter: parent.verticalCenter
                width: 10
                height: 10
                radius: 5
                color: App.globe.card.colour === "" ? "transparent" : App.globe.card.colour
            }
            Column {
                id: names
                anchors.verticalCenter: parent.verticalCenter
                anchors.left: dot.right
                anchors.leftMargin: 10
                anchors.right: close.left
                anchors.rightMargin: 6
                PlainText {
                    width: parent.width
                    text: App.globe.card.title
                    elide: Text.ElideRight
                    color: Theme.text
                    font.pixelSize: Theme.title
                    font.weight: Font.DemiBold
                }
                PlainText {
                    width: parent.width
                    text: App.globe.card.subtitle
                    wrapMode: Text.Wrap
                    color: Theme.muted
                    font.pixelSize: Theme.tiny
                }
            }
            PlainButton {
                id: close
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                sign: "cross"
                explanation: App.globe.words.close
                onClicked: {
                    App.globe.dismiss();
                    card.closed();
                }
            }
        }

        Repeater {
            model: App.globe.cardRows

            Item {
                id: row
                required property string label
                required property string value
                width: parent.width
                height: 20 * Theme.scale
                Accessible.role: Accessible.StaticText
                Accessible.name: label + ": " + value
                PlainText {
                    id: what
                    anchors.left: parent.left
                    text: row.label
                    color: Theme.muted
                    font.pixelSize: Theme.small
                }
                PlainText {
                    anchors.right: parent.right
                    width: parent.width - what.width - Theme.space
                    horizontalAlignment: Text.AlignRight
                    text: row.value
                    elide: Text.ElideRight
                    color: Theme.text
                    font.pixelSize: Theme.small
                    font.weight: Font.DemiBold
                }
            }
        }
    }
}
