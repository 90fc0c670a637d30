// A page that scrolls when its content is taller than the window, with the keys as well.
import QtQuick
import QtQuick.Templates as T
import NimbaraPages

Flickable {
    id: page

    property real margin: width < 560 ? 1.5 * Theme.space : 3 * Theme.space
    property real most: 1240
    // How many columns of cards there is room for.
    readonly property int lanes: width >= 1900 * Theme.scale ? 3 : width >= 1300 * Theme.scale ? 2 : 1
    readonly property real inner: Math.min(width - 2 * margin, most)
    default property alias content: column.data

    contentWidth: width
    contentHeight: column.height + 2 * margin
    boundsBehavior: Flickable.StopAtBounds
    activeFocusOnTab: false
    T.ScrollBar.vertical: ThinBar {}

    function reveal(item) {
        if (!item)
            return;
        const top = item.mapToItem(contentItem, 0, 0).y;
        if (top < contentY)
            contentY = Math.max(0, top - margin);
        else if (top + item.height > contentY + height)
            contentY = Math.min(contentHeight - height, top + item.height + margin - height);
    }

    // Whoever walks with the keys sees where they are.
    readonly property Item focused: Window.activeFocusItem
    onFocusedChanged: if (focused && page.showsFocus(focused) && page.holds(focused)) page.reveal(focused)

    // A control that the mouse chose is in sight already.
    function showsFocus(item) {
        const control = item as T.Control;
        return !control || control.visualFocus;
    }

    function holds(item) {
        for (let up = item.parent; up; up = up.parent) {
            if (up === column)
                return true;
        }
        return false;
    }

    // What takes the keys when the page is shown, in place of its heading.
    property Item entry: null

    readonly property real lowest: Math.max(0, contentHeight - height)
    function scroll(distance) {
        contentY = Math.min(lowest, Math.max(0, contentY + distance));
    }

    Keys.onPressed: event => {
        if (event.modifiers & ~Qt.KeypadModifier)
            return;
        // A line of the old page stays in sight on the new one.
        const page = Math.max(80, height - 60 * Theme.scale);
        const distances = new Map([[Qt.Key_PageDown, page], [Qt.Key_PageUp, -page], [Qt.Key_Home, -contentHeight], [Qt.Key_End, contentHeight]]);
        const distance = distances.get(event.key);
        if (distance === undefined)
            return;
        scroll(distance);
        event.accepted = true;
    }
    Keys.onDownPressed: scroll(80)
    Keys.onUpPressed: scroll(-80)

    Column {
        id: column
        x: (page.width - width) / 2
        y: page.margin
        width: page.inner
        spacing: 2 * Theme.space
    }
}
