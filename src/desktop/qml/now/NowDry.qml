// That nothing falls within the next two hours, and who says so, in one line.
import QtQuick
import NimbaraItems
import NimbaraPages

PlainText {
    text: Theme.joined([App.nowcast.sentence, App.nowcast.source], "  ·  ")
    wrapMode: Text.Wrap
    horizontalAlignment: Text.AlignLeft
    color: Theme.muted
    font.pixelSize: Theme.small
    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
