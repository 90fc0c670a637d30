// A line to type in with its name above.
import QtQuick
import NimbaraPages

Column {
    id: labelled

    property string title
    property alias text: field.text
    property alias example: field.placeholderText
    property alias echoMode: field.echoMode

    function clear() {
        field.clear();
    }

    spacing: 4

    PlainText {
        width: parent.width
        text: labelled.title
        wrapMode: Text.Wrap
        horizontalAlignment: Text.AlignLeft
        color: Theme.muted
        font.pixelSize: Theme.tiny
        font.weight: Font.DemiBold
    }
    Field {
        id: field
        width: parent.width
        title: labelled.title
    }
}
