// What was removed, and the way back.
import QtQuick
import NimbaraPages
import NimbaraItems

Rectangle {
    id: bar

    implicitHeight: content.height + 2 * Theme.space
    radius: Theme.radius
    color: Theme.raised

    Flow {
        id: content
        x: 2 * Theme.space
        y: Theme.space
        width: parent.width - 4 * Theme.space
        spacing: Theme.space
        PlainText {
            width: Math.min(implicitWidth, content.width - dismiss.width - Theme.space)
            height: Math.max(implicitHeight, undo.height)
            verticalAlignment: Text.AlignVCenter
            horizontalAlignment: Text.AlignLeft
            text: App.undoText
            wrapMode: Text.Wrap
            color: Theme.text
            font.pixelSize: Theme.body
            Accessible.role: Accessible.AlertMessage
            Accessible.name: text
        }
        PlainButton {
            id: undo
            text: App.words.undo
            onClicked: App.undo()
        }
        PlainButton {
            id: dismiss
            sign: "cross"
            explanation: App.words.dismiss
            onClicked: App.forgetUndo()
        }
    }
}
