// A module or a station in three lines.
import QtQuick
import NimbaraPages

Column {
    id: words

    property string name
    property string values
    property string detail
    property bool isTroubled: false

    spacing: 2

    component Line: PlainText {
        width: words.width
        visible: text !== ""
        wrapMode: Text.Wrap
        horizontalAlignment: Text.AlignLeft
        color: Theme.text
        font.pixelSize: Theme.body
    }

    Line { text: words.name }
    Line {
        text: words.values
        font.weight: Font.DemiBold
    }
    Line {
        text: words.detail
        color: words.isTroubled ? Theme.danger : Theme.muted
        font.pixelSize: Theme.small
    }
}
