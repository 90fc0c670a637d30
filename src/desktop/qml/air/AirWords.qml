// A text of a card that is read as it stands; none takes no room.
import QtQuick
import NimbaraPages

PlainText {
    width: parent ? parent.width : 0
    visible: text !== ""
    wrapMode: Text.Wrap
    horizontalAlignment: Text.AlignLeft
    color: Theme.text
    font.pixelSize: Theme.body
    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
