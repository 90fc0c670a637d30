// A long list that few people need: its title opens it, and it is made only then.
import QtQuick
import QtQuick.Controls.Basic
import NimbaraPages

Card {
    id: card

    property string heading
    property string hint
    property Component list
    property bool isOpen: false

    Column {
        width: parent.width
        spacing: Theme.space

        Pressable {
            id: head
            width: parent.width
            onClicked: card.isOpen = !card.isOpen
            isExpandable: true
            isExpanded: card.isOpen
            Accessible.name: card.heading
            Accessible.description: card.hint
            contentItem: Item {
                implicitHeight: Math.max(words.height, sign.height)
                PlainText {
                    id: words
                    width: parent.width - sign.width - Theme.space
                    anchors.left: parent.left
                    anchors.verticalCenter: parent.verticalCenter
                    text: card.heading
                    wrapMode: Text.Wrap
                    horizontalAlignment: Text.AlignLeft
                    color: Theme.muted
                    font.pixelSize: Theme.small
                    font.weight: Font.DemiBold
                }
                Sign {
                    id: sign
                    anchors.right: parent.right
                    anchors.verticalCenter: parent.verticalCenter
                    size: 18 * Theme.scale
                    name: card.isOpen ? "up" : "down"
                    ink: Theme.muted
                }
            }
            background: Rectangle {
                anchors.fill: parent
                anchors.margins: -Theme.space
                radius: 10
                color: head.hovered ? Theme.raised : "transparent"
                opacity: head.visualFocus || head.hovered ? 1 : 0
                border.width: head.visualFocus ? 2 : 0
                border.color: Theme.accent
            }
        }
        PlainText {
            width: parent.width
            visible: card.isOpen && text !== ""
            text: card.hint
            wrapMode: Text.Wrap
            horizontalAlignment: Text.AlignLeft
            color: Theme.muted
            font.pixelSize: Theme.small
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        Loader {
            width: parent.width
            active: card.isOpen
            visible: active
            sourceComponent: card.list
        }
    }
}
