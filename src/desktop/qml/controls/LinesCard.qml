// A card of sentences, one below the other.
import QtQuick
import NimbaraPages

Card {
    id: card

    property string lines

    Column {
        width: parent.width
        spacing: 0.75 * Theme.space

        Repeater {
            model: card.lines === "" ? [] : card.lines.split("\n")
            PlainText {
                required property string modelData
                width: parent.width
                text: modelData
                wrapMode: Text.Wrap
                horizontalAlignment: Text.AlignLeft
                color: Theme.text
                font.pixelSize: Theme.body
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
        }
    }
}
