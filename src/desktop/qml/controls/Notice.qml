// A sentence that asks for attention.
import QtQuick
import NimbaraPages

Rectangle {
    id: notice

    property string text
    property string level: "advisory"

    visible: text !== ""
    implicitHeight: words.height + 3 * Theme.space
    radius: Theme.radius
    color: Theme.alertColour(level)

    PlainText {
        id: words
        x: 2 * Theme.space
        y: 1.5 * Theme.space
        width: parent.width - 4 * Theme.space
        text: notice.text
        horizontalAlignment: Text.AlignLeft
        wrapMode: Text.Wrap
        color: Theme.text
        font.pixelSize: Theme.body
        Accessible.role: Accessible.AlertMessage
        Accessible.name: text
    }
}
