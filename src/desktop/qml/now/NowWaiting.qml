// What the present's page shows below its head until the forecast has come: its outlines, or nothing that could be
// mistaken for weather where it cannot come.
import QtQuick
import NimbaraPages
import NimbaraItems

Column {
    id: waiting

    spacing: 2 * Theme.space
    Accessible.ignored: true

    component Block: Rectangle {
        radius: 6
        color: Theme.raised
    }

    SequentialAnimation on opacity {
        running: waiting.visible && !Theme.calm
        loops: Animation.Infinite
        NumberAnimation { to: 0.55; duration: 900; easing.type: Easing.InOutSine }
        NumberAnimation { to: 1; duration: 900; easing.type: Easing.InOutSine }
    }

    Rectangle {
        width: waiting.width
        height: 208 * Theme.scale
        radius: Theme.radius
        color: Theme.card
        border.color: Theme.outline
        clip: true
        Block { x: 2 * Theme.space; y: 2 * Theme.space; width: 120 * Theme.scale; height: 12 * Theme.scale }
        Row {
            x: 2 * Theme.space
            y: 52 * Theme.scale
            spacing: 22 * Theme.scale
            Repeater {
                model: Math.max(0, Math.floor((waiting.width - 4 * Theme.space) / (46 * Theme.scale)))
                Column {
                    spacing: 16 * Theme.scale
                    Block { width: 24 * Theme.scale; height: 10 * Theme.scale }
                    Block { width: 24 * Theme.scale; height: 24 * Theme.scale; radius: 12 * Theme.scale }
                    Block { width: 24 * Theme.scale; height: 12 * Theme.scale }
                    Block { width: 24 * Theme.scale; height: 8 * Theme.scale }
                }
            }
        }
    }
    Grid {
        id: tiles
        columns: Math.max(2, Math.min(4, Math.floor(waiting.width / (190 * Theme.scale))))
        spacing: 2 * Theme.space
        Repeater {
            model: 4
            Rectangle {
                width: (waiting.width - (tiles.columns - 1) * tiles.spacing) / tiles.columns
                height: 110 * Theme.scale
                radius: Theme.radius
                color: Theme.card
                border.color: Theme.outline
                Block { x: 2 * Theme.space; y: 2 * Theme.space; width: 56 * Theme.scale; height: 12 * Theme.scale }
                Block { x: 2 * Theme.space; y: 46 * Theme.scale; width: 84 * Theme.scale; height: 22 * Theme.scale }
            }
        }
    }
}
