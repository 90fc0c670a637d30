// Places: search, add, choose, order, remove.
import QtQuick
import QtQuick.Controls.Basic
import NimbaraPages

ScrollPage {
    id: page

    signal chosen

    function focusSearch() {
        search.forceActiveFocus();
        search.selectAll();
    }

    most: 760 * Theme.scale

    PlainText {
        width: page.inner
        text: app.words.places
        horizontalAlignment: Text.AlignLeft
        color: Theme.text
        font.pixelSize: Theme.headline
        font.weight: Font.DemiBold
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }

    TextField {
        id: search
        width: page.inner
        height: 48 * Theme.scale
        leftPadding: 18
        rightPadding: 18
        focus: true
        placeholderText: app.words.search
        placeholderTextColor: Theme.muted
        color: Theme.text
        selectionColor: Theme.accent
        selectedTextColor: Theme.accentText
        font.pixelSize: Theme.body
        Accessible.role: Accessible.EditableText
        Accessible.name: app.words.search
        Accessible.description: app.words.searchHint
        onTextEdited: app.search(text)
        Keys.onEscapePressed: {
            clear();
            app.search("");
        }
        onAccepted: if (app.found.count > 0) page.take(0)
        background: Rectangle {
            radius: height / 2
            color: Theme.card
            border.width: search.activeFocus ? 2 : 1
            border.color: search.activeFocus ? Theme.accent : Theme.outline
        }
    }
    PlainText {
        width: page.inner
        visible: app.found.count === 0 && app.searchNote === ""
        text: search.text.trim() !== "" && app.searchText === search.text.trim() ? app.words.noMatch : app.words.searchHint
        horizontalAlignment: Text.AlignLeft
        wrapMode: Text.Wrap
        color: Theme.muted
        font.pixelSize: Theme.small
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }

    function take(row) {
        app.addFound(row);
        search.clear();
        app.search("");
        page.chosen();
    }

    Card {
        visible: app.found.count > 0
        width: page.inner
        padding: Theme.space
        Column {
            width: parent.width
            Repeater {
                model: app.found
                FoundRow {
                    width: parent.width
                    onClicked: page.take(index)
                }
            }
        }
    }

    PlainText {
        width: page.inner
        visible: text !== ""
        text: app.searchNote
        horizontalAlignment: Text.AlignLeft
        wrapMode: Text.Wrap
        color: Theme.muted
        font.pixelSize: Theme.small
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
    Column {
        visible: app.searchText !== "" && search.text.trim() !== ""
        width: page.inner
        spacing: Theme.space / 2
        PlainButton {
            width: Math.min(implicitWidth, page.inner)
            text: app.isSearchingOnline ? app.words.searchingOnline : app.words.searchOnline.replace("%@", app.searchText)
            enabled: !app.isSearchingOnline
            onClicked: app.searchOnline()
        }
        PlainText {
            width: parent.width
            text: app.words.searchOnlineHint
            horizontalAlignment: Text.AlignLeft
            wrapMode: Text.Wrap
            color: Theme.muted
            font.pixelSize: Theme.small
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
    }

    UndoBar {
        visible: app.removed !== ""
        width: page.inner
    }

    HereCard {
        width: page.inner
        onChosen: page.chosen()
    }

    PlainText {
        width: page.inner
        visible: text !== ""
        text: app.problem || (app.isReady && app.places.count === 0 ? app.words.noPlaces : "")
        horizontalAlignment: Text.AlignLeft
        wrapMode: Text.Wrap
        color: Theme.text
        font.pixelSize: Theme.body
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }

    Repeater {
        model: app.places
        PlaceRow {
            width: page.inner
            onChosen: page.chosen()
        }
    }
}
