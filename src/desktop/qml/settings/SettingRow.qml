// What all setting rows share: title and explanation, and the control beside them or, where that would be too
// tight, below.
import QtQuick
import NimbaraPages

Item {
    id: row

    property string title
    property string explanation
    property bool stacked: width < slot.implicitWidth + 170 * Theme.scale
    default property alias control: slot.data
    property alias words: words

    implicitHeight: stacked
        ? words.height + Theme.space + slot.height + 2 * Theme.space
        : Math.max(words.height, slot.height) + 2 * Theme.space
    implicitWidth: 320

    Column {
        id: words
        anchors.left: parent.left
        y: row.stacked ? Theme.space : (row.height - height) / 2
        width: row.stacked ? row.width : row.width - slot.width - 2 * Theme.space
        spacing: 2
        opacity: row.enabled ? 1 : 0.5
        PlainText {
            width: parent.width
            text: row.title
            wrapMode: Text.Wrap
            horizontalAlignment: Text.AlignLeft
            color: Theme.text
            font.pixelSize: Theme.body
            Accessible.ignored: true
        }
        PlainText {
            width: parent.width
            visible: text !== ""
            text: row.explanation
            wrapMode: Text.Wrap
            horizontalAlignment: Text.AlignLeft
            color: Theme.muted
            font.pixelSize: Theme.small
            Accessible.ignored: true
        }
    }
    Item {
        id: slot
        x: row.stacked !== row.LayoutMirroring.enabled ? 0 : row.width - width
        y: row.stacked ? words.y + words.height + Theme.space : (row.height - height) / 2
        implicitWidth: children.length > 0 ? children[0].implicitWidth : 0
        width: row.stacked ? Math.min(row.width, implicitWidth) : implicitWidth
        height: childrenRect.height
    }
}
