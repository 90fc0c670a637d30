// The measured details of the present.
import QtQuick
import NimbaraPages

Grid {
    id: tiles

    columns: Math.max(2, Math.min(4, Math.floor(width / 190)))
    spacing: 2 * Theme.space

    Repeater {
        model: app.tiles
        DetailTile { width: (tiles.width - (tiles.columns - 1) * tiles.spacing) / tiles.columns }
    }
}
