// The menu of places: typing narrows it and searches, Enter takes the row that stands out.
import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Templates as T
import NimbaraPages
import NimbaraItems

T.Popup {
    id: menu

    property Item heading  // that it hangs below; none stands it in the middle
    property bool wantsFirst: false
    readonly property real room: parent ? parent.height : 0
    // Found where the user is: that was the wish.
    readonly property bool isHere: App.here.isSelected
    onIsHereChanged: if (isHere) close()
    // A list that changes below a resting pointer is not pointed at.
    property point pointer: Qt.point(-1, -1)

    signal managed

    function show(typed, from) {
        menu.heading = from;
        place(from);
        App.switcher.isOpen = true;
        App.search(typed);
        field.text = typed;
        list.currentIndex = typed === "" ? App.switcher.selectedRow : 0;
        pointer = Qt.point(-1, -1);
        open();
        field.forceActiveFocus();
    }

    function place(from) {
        const at = from ? from.mapToItem(null, 0, from.height) : null;
        x = at ? Math.max(Theme.space, Math.min(at.x - Theme.space, parent.width - width - Theme.space)) : (parent.width - width) / 2;
        y = at ? Math.min(at.y + Theme.space, room / 2) : Math.max(Theme.space, Math.min(72, room / 10));
    }

    function take(index) {
        const row = list.itemAtIndex(index) as SwitcherRow;
        if (row)
            row.clicked();
    }

    function choose(kind, target) {
        if (kind === "online")
            return App.searchOnline();
        if (kind === "locate")
            return App.locate();
        if (kind === "manage")
            menu.managed();
        else if (kind === "here")
            App.selectHere();
        else if (kind === "found")
            App.addFound(Number(target));
        else
            App.selectPlace(target);
        menu.close();
    }

    parent: T.Overlay.overlay
    width: parent ? Math.min(parent.width - 2 * Theme.space, 520 * Theme.scale) : 0
    height: Math.min(field.height + list.contentHeight + 3 * Theme.space, room - y - Theme.space)
    modal: true
    focus: true
    padding: Theme.space
    onClosed: {
        App.switcher.isOpen = false;
        App.search("");
    }
    T.Overlay.modal: Rectangle { color: Qt.rgba(0, 0, 0, 0.4) }
    background: Rectangle {
        radius: Theme.radius
        color: Theme.card
        border.color: Theme.outline
    }

    Connections {
        target: App
        enabled: menu.opened
        function onSearched() {
            if (!App.isAnswered)
                return;
            list.currentIndex = field.text.trim() === "" ? App.switcher.selectedRow : 0;
            if (!menu.wantsFirst)
                return;
            menu.wantsFirst = false;
            const first = list.itemAtIndex(0) as SwitcherRow;
            // Nothing is sent without being seen.
            if (first && first.kind !== "online")
                first.clicked();
        }
    }
    contentItem: FocusScope {
        Field {
            id: field
            width: parent.width
            height: 44 * Theme.scale
            focus: true
            title: App.words.switchPlace
            placeholderText: App.words.switchHint
            Accessible.description: list.currentItem ? (list.currentItem as SwitcherRow).sentence : ""
            onTextEdited: {
                menu.wantsFirst = false;
                App.search(text);
            }
            onAccepted: {
                if (App.isAnswered)
                    menu.take(list.currentIndex);
                else
                    menu.wantsFirst = true;
            }
            Keys.onDownPressed: list.currentIndex = Math.min(list.count - 1, list.currentIndex + 1)
            Keys.onUpPressed: list.currentIndex = Math.max(0, list.currentIndex - 1)
            Keys.onPressed: event => {
                const rows = Math.max(1, Math.floor(list.height / (52 * Theme.scale)) - 1);
                if (event.key === Qt.Key_PageDown)
                    list.currentIndex = Math.min(list.count - 1, list.currentIndex + rows);
                else if (event.key === Qt.Key_PageUp)
                    list.currentIndex = Math.max(0, list.currentIndex - rows);
                else
                    return;
                event.accepted = true;
            }
        }
        ListView {
            id: list
            anchors.top: field.bottom
            anchors.topMargin: Theme.space
            anchors.bottom: parent.bottom
            width: parent.width
            clip: true
            model: App.switcher.rows
            boundsBehavior: Flickable.StopAtBounds
            highlightMoveDuration: 0
            cacheBuffer: 2000
            ScrollBar.vertical: ThinBar {}
            readonly property int spokenRole: Accessible.List
            Accessible.name: App.words.switchPlace
            delegate: SwitcherRow {
                width: list.width
                isCurrent: ListView.isCurrentItem
                onPointed: position => {
                    if (menu.pointer.x >= 0 && position !== menu.pointer)
                        list.currentIndex = index;
                    menu.pointer = position;
                }
                onClicked: menu.choose(kind, target)
            }
        }
    }
}
