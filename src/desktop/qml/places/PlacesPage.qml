// Places: search, add, choose, order, rename, remove. In a wide window the places stand beside the search.
import QtQuick
import NimbaraPages
import NimbaraItems

ScrollPage {
    id: page

    signal chosen

    // Typed while nothing else has the focus.
    function begin(text) { search.begin(text) }

    function focusSearch() {
        search.field.forceActiveFocus();
        search.field.selectAll();
    }

    most: [760, 1400, 1800][page.lanes - 1] * Theme.scale

    PlainText {
        width: page.inner
        text: App.words.places
        horizontalAlignment: Text.AlignLeft
        color: Theme.text
        font.pixelSize: Theme.headline
        font.weight: Font.DemiBold
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }

    Board {
        width: page.inner
        weights: page.lanes === 1 ? [1] : [1, 1.6]
        spacing: 2 * Theme.space
        isMirrored: LayoutMirroring.enabled

        PlaceSearch {
            id: search
            readonly property int lane: 0
            onTaken: page.chosen()
        }

        UndoBar {
            readonly property int lane: 0
            visible: App.undoText !== ""
        }

        HereCard {
            readonly property int lane: 0
            onChosen: page.chosen()
        }

        PlainText {
            readonly property int lane: 0
            visible: text !== ""
            text: App.problem
            horizontalAlignment: Text.AlignLeft
            wrapMode: Text.Wrap
            color: Theme.text
            font.pixelSize: Theme.body
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }

        Column {
            id: list
            readonly property int lane: 1
            spacing: 1.5 * Theme.space
            // Of the row that is being dragged: where it was, and the row that it would push aside.
            property int from: -1
            property int to: -1

            // How far the others make room.
            readonly property real gap: from < 0 ? 0 : rows.itemAt(from).height + spacing

            function target(from, middle) {
                let at = 0;
                for (let i = 0; i < rows.count; ++i) {
                    const row = rows.itemAt(i);
                    if (i !== from && row.y + row.height / 2 < middle)
                        ++at;
                }
                return at;
            }
            function shift(index) {
                if (from < 0 || index === from)
                    return 0;
                return index > from && index <= to ? -gap : index < from && index >= to ? gap : 0;
            }

            Repeater {
                id: rows
                model: App.places
                PlaceRow {
                    id: row
                    width: list.width
                    shift: list.shift(index)
                    moves: list.from >= 0
                    onChosen: page.chosen()
                    onDragged: distance => {
                        list.from = index;
                        list.to = list.target(index, y + distance + height / 2);
                        page.follow(list.mapToItem(page.contentItem, 0, y + distance).y, height);
                    }
                    onDropped: {
                        const to = list.to;
                        list.from = list.to = -1;
                        if (to >= 0 && to !== index)
                            App.movePlace(placeId, to + 1);
                    }
                }
            }
        }
    }

    // A row that is dragged to an edge takes the page with it.
    function follow(top, height) {
        const lowest = Math.max(0, contentHeight - page.height);
        if (top < contentY)
            contentY = Math.max(0, contentY - 8);
        else if (top + height > contentY + page.height)
            contentY = Math.min(lowest, contentY + 8);
    }
}
