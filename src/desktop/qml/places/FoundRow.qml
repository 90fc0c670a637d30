// A place that a search has found.
import QtQuick
import QtQuick.Controls.Basic
import NimbaraPages
import NimbaraItems

Pressable {
    id: match

    required property int index
    required property string name
    required property string area
    required property bool isSaved
    required property string sentence
    property bool isFirst: false  // Enter takes it

    implicitHeight: Math.max(52 * Theme.scale, words.height + Theme.space)
    Keys.onDownPressed: match.nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)
    Keys.onUpPressed: match.nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)
    Accessible.name: sentence + ", " + (isSaved ? App.words.saved : App.words.add)

    background: Rectangle {
        radius: 10
        color: match.hovered || match.isFirst ? Theme.raised : "transparent"
        border.width: match.visualFocus ? 2 : 0
        border.color: Theme.accent

        // What Enter takes is not only what the pointer rests on.
        Rectangle {
            visible: match.isFirst
            x: LayoutMirroring.enabled ? parent.width - width : 0
            y: 8
            width: 4
            height: parent.height - 16
            radius: 2
            color: Theme.accent
        }
    }
    contentItem: Item {
        Column {
            id: words
            anchors.left: parent.left
            anchors.leftMargin: 1.5 * Theme.space
            anchors.right: sign.left
            anchors.rightMargin: Theme.space
            anchors.verticalCenter: parent.verticalCenter
            PlainText {
                width: parent.width
                text: match.name
                elide: Text.ElideRight
                horizontalAlignment: Text.AlignLeft
                color: Theme.text
                font.pixelSize: Theme.body
            }
            PlainText {
                width: parent.width
                visible: text !== ""
                text: match.area
                wrapMode: Text.Wrap
                maximumLineCount: 2
                elide: Text.ElideRight
                horizontalAlignment: Text.AlignLeft
                color: Theme.muted
                font.pixelSize: Theme.tiny
            }
        }
        PlainText {
            id: sign
            anchors.right: parent.right
            anchors.rightMargin: 1.5 * Theme.space
            anchors.verticalCenter: parent.verticalCenter
            text: match.isSaved ? App.words.saved : "+ " + App.words.add
            color: match.isSaved ? Theme.muted : Theme.accent
            font.pixelSize: Theme.small
            font.weight: Font.DemiBold
        }
    }
}
