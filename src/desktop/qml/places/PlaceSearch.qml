// Searches for a place: a line to type in, what is found below it, and the way to the search online. Enter takes the
// first.
import QtQuick
import QtQuick.Controls.Basic
import NimbaraPages
import NimbaraItems

Column {
    id: search

    readonly property alias field: line
    readonly property bool isEmpty: line.text.trim() === ""
    property bool wantsFirst: false

    signal taken

    // Typed elsewhere on the page.
    function begin(text) {
        line.forceActiveFocus();
        line.text = text;
        App.search(text);
    }

    function clear() {
        line.clear();
        App.search("");
    }

    function take(row) {
        App.addFound(row);
        clear();
        search.taken();
    }

    function takeFirst() {
        wantsFirst = false;
        if (search.isEmpty)
            return;
        if (!App.isAnswered)
            wantsFirst = true;
        else if (App.found.count > 0)
            take(0);
        else
            App.searchOnline();
    }

    spacing: Theme.space

    // Whoever is faster than the search gets what it finds.
    Connections {
        target: App
        function onSearched() {
            // The menu of places searches as well.
            if (App.switcher.isOpen)
                line.clear();
            if (!search.wantsFirst || !App.isAnswered)
                return;
            search.wantsFirst = false;
            if (App.found.count > 0)
                search.take(0);
        }
    }

    TextField {
        id: line
        width: parent.width
        height: 48 * Theme.scale
        readonly property bool isMirrored: Application.layoutDirection === Qt.RightToLeft
        leftPadding: isMirrored ? 18 : 44 * Theme.scale
        rightPadding: isMirrored ? 44 * Theme.scale : 18
        focus: true
        placeholderText: App.words.search
        placeholderTextColor: Theme.muted
        color: Theme.text
        selectionColor: Theme.accent
        selectedTextColor: Theme.accentText
        selectByMouse: true
        verticalAlignment: TextInput.AlignVCenter
        font.pixelSize: Math.min(Theme.body, width / 14)
        Accessible.role: Accessible.EditableText
        Accessible.name: App.words.search
        Accessible.description: App.words.searchHint
        onTextEdited: {
            search.wantsFirst = false;
            App.search(text);
        }
        onAccepted: search.takeFirst()
        Keys.onEscapePressed: search.clear()
        Keys.onDownPressed: event => {
            const first = matches.itemAt(0);
            if (first)
                first.forceActiveFocus(Qt.TabFocusReason);
            else
                event.accepted = false;
        }
        // What was typed is taken back before what was done.
        Keys.onPressed: event => {
            if (!event.matches(StandardKey.Undo) || line.canUndo)
                return;
            App.undo();
            event.accepted = true;
        }
        background: Rectangle {
            radius: height / 2
            color: Theme.card
            border.width: line.activeFocus ? 2 : 1
            border.color: line.activeFocus ? Theme.accent : Theme.outline
            Sign {
                x: line.isMirrored ? parent.width - width - 16 * Theme.scale : 16 * Theme.scale
                anchors.verticalCenter: parent.verticalCenter
                size: 20 * Theme.scale
                name: "search"
                ink: Theme.muted
            }
        }
    }
    PlainText {
        width: parent.width
        visible: App.found.count === 0 && App.searchNote === ""
        leftPadding: 18
        text: !search.isEmpty && App.isAnswered ? App.words.noMatch : App.words.searchHint
        horizontalAlignment: Text.AlignLeft
        wrapMode: Text.Wrap
        color: Theme.muted
        font.pixelSize: Theme.small
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }

    Card {
        visible: App.found.count > 0 && !search.isEmpty
        width: parent.width
        padding: Theme.space
        Column {
            width: parent.width
            Repeater {
                id: matches
                model: App.found
                FoundRow {
                    width: parent.width
                    isFirst: index === 0 && line.activeFocus
                    onClicked: search.take(index)
                }
            }
        }
    }

    PlainText {
        width: parent.width
        visible: text !== ""
        leftPadding: 18
        text: App.searchNote
        horizontalAlignment: Text.AlignLeft
        wrapMode: Text.Wrap
        color: Theme.muted
        font.pixelSize: Theme.small
        Accessible.role: Accessible.AlertMessage
        Accessible.name: text
    }
    Column {
        visible: App.isAnswered && !search.isEmpty
        width: parent.width
        spacing: Theme.space / 2
        PlainButton {
            width: Math.min(implicitWidth, parent.width)
            isMain: App.found.count === 0
            text: App.isSearchingOnline ? App.words.searchingOnline : App.words.searchOnline.replace("%@", App.searchText)
            enabled: !App.isSearchingOnline
            onClicked: App.searchOnline()
        }
        PlainText {
            width: parent.width
            text: App.words.searchOnlineHint
            horizontalAlignment: Text.AlignLeft
            wrapMode: Text.Wrap
            color: Theme.muted
            font.pixelSize: Theme.tiny
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
    }
}
