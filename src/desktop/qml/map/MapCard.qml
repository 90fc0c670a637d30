// What was chosen on the map, and the way to all that is known of it.
import QtQuick
import NimbaraPages
import NimbaraItems

Rectangle {
    id: card

    signal closed

    height: content.height + 3 * Theme.space
    radius: Theme.radius
    color: Qt.alpha(Theme.card, 0.97)
    border.width: 1
    border.color: Theme.outline
    Accessible.role: Accessible.Grouping
    Accessible.name: App.map.card.sentence

    MouseArea { anchors.fill: parent; onWheel: {} }

    Column {
        id: content
        x: 1.5 * Theme.space
        y: 1.5 * Theme.space
        width: parent.width - 3 * Theme.space
        spacing: Theme.space

        Item {
            width: parent.width
            height: Math.max(title.height, close.height)
            Rectangle {
                id: bar
                anchors.left: parent.left
                visible: App.map.card.level !== ""
                width: visible ? 4 : 0
                height: parent.height
                radius: 2
                color: Theme.alertInk(App.map.card.level || "info")
            }
            PlainText {
                id: title
                anchors.left: bar.right
                anchors.leftMargin: bar.visible ? Theme.space : 0
                anchors.right: close.left
                anchors.rightMargin: 6
                anchors.verticalCenter: parent.verticalCenter
                text: App.map.card.title
                horizontalAlignment: Text.AlignLeft
                wrapMode: Text.Wrap
                maximumLineCount: 3
                elide: Text.ElideRight
                color: Theme.text
                font.pixelSize: Theme.title
                font.weight: Font.DemiBold
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
            PlainButton {
                id: close
                anchors.right: parent.right
                sign: "cross"
                explanation: App.map.words.close
                onClicked: {
                    App.map.dismiss();
                    card.closed();
                }
            }
        }
        PlainText {
            width: parent.width
            visible: text !== ""
            text: App.map.card.note
            horizontalAlignment: Text.AlignLeft
            wrapMode: Text.Wrap
            color: Theme.muted
            font.pixelSize: Theme.small
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        PlainButton {
            text: App.map.card.kind === "station" ? App.map.words.useStation : App.map.words.open
            onClicked: App.map.open()
        }
    }
}
