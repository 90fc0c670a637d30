// What follows the hours on the page of the present: the measured details, sun and moon, and the source.
import QtQuick
import NimbaraPages
import NimbaraItems

Column {
    id: details

    spacing: 2 * Theme.space

    Grid {
        id: tiles
        visible: App.tiles.count > 0
        width: details.width
        columns: Math.max(width < 300 * Theme.scale ? 1 : 2, Math.min(4, Math.floor(width / (190 * Theme.scale))))
        spacing: 2 * Theme.space
        Repeater {
            model: App.tiles
            DetailTile { width: (tiles.width - (tiles.columns - 1) * tiles.spacing) / tiles.columns }
        }
    }

    SkyCards {
        visible: App.now.hasWeather
        width: details.width
    }

    Loader {
        width: details.width
        visible: App.now.advice !== ""
        source: visible ? "NowAdvice.qml" : ""
    }

    PlainText {
        width: details.width
        visible: text !== ""
        text: Theme.joined([App.now.source, App.now.age], "  ·  ")
        wrapMode: Text.Wrap
        horizontalAlignment: Text.AlignHCenter
        color: Theme.muted
        font.pixelSize: Theme.tiny
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
}
