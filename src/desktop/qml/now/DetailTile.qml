// One detail of the present: its value, a word about it, and a small gauge.
import QtQuick
import NimbaraItems
import NimbaraPages

Card {
    id: tile

    required property string kind
    required property string value
    required property string note
    required property double share
    required property double direction
    required property string scaleFrom
    required property string scaleTo
    required property string mark
    required title

    readonly property bool isWind: kind === "wind"

    height: Math.max(implicitHeight + 1.5 * Theme.space + (scaleTo !== "" ? ends.height : 0), 148 * Theme.scale)
    Accessible.role: Accessible.StaticText
    Accessible.name: title + ": " + value + (note !== "" ? ", " + note : "") + (mark !== "" ? ", " + mark : "")

    StationMark {
        parent: tile
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.margins: tile.padding
        text: tile.mark
        isSpoken: false
    }
    Column {
        anchors.left: parent.left
        width: parent.width - (tile.isWind ? compass.width + Theme.space : 0)
        spacing: 4
        PlainText {
            width: parent.width
            text: tile.value
            fontSizeMode: Text.HorizontalFit
            minimumPixelSize: Theme.body
            horizontalAlignment: Text.AlignLeft
            color: Theme.text
            font.pixelSize: 1.5 * Theme.body
        }
        PlainText {
            width: parent.width
            visible: text !== ""
            text: tile.note
            horizontalAlignment: Text.AlignLeft
            wrapMode: Text.Wrap
            color: Theme.muted
            font.pixelSize: Theme.small
        }
    }
    WindCompass {
        id: compass
        visible: tile.isWind
        anchors.right: parent.right
        width: Math.min(64 * Theme.scale, tile.width * 0.34)
        height: width
        direction: tile.direction
        lines: Theme.muted
        needle: Theme.wind
    }
    Rectangle {
        parent: tile
        visible: !tile.isWind
        x: tile.padding
        y: tile.height - tile.padding - (tile.scaleTo !== "" ? ends.height - 0.25 * tile.padding + 4 : 0)
        width: tile.width - 2 * tile.padding
        height: 4
        radius: 2
        color: Theme.raised
        Rectangle {
            anchors.left: parent.left
            width: Math.max(4, parent.width * tile.share)
            height: parent.height
            radius: 2
            color: tile.kind === "uv" ? Theme.sun : tile.kind === "pressure" ? Theme.air : Theme.rain
        }
    }
    // What the gauge's ends stand for.
    Item {
        id: ends
        parent: tile
        visible: tile.scaleTo !== ""
        x: tile.padding
        y: tile.height - height - 0.75 * tile.padding
        width: tile.width - 2 * tile.padding
        height: lower.height
        PlainText {
            id: lower
            anchors.left: parent.left
            text: tile.scaleFrom
            color: Theme.muted
            font.pixelSize: Theme.tiny
        }
        PlainText {
            anchors.right: parent.right
            text: tile.scaleTo
            color: Theme.muted
            font.pixelSize: Theme.tiny
        }
    }
}
