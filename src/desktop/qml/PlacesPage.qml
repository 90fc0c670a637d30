// Places: search, add, choose, order, remove.
import QtQuick
import QtQuick.Controls.Basic
import NimbaraPages
import NimbaraItems

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
        text: App.words.places
        horizontalAlignment: Text.AlignLeft
        color: Theme.text
        font.pixelSize: Theme.headline
        font.weight: Font.DemiBold
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }
    // Whoever opened another page is shown this one.
    PlainText {
        objectName: "firstPlace"
        width: page.inner
        visible: App.isReady && !App.now.hasPlace
        text: App.words.firstPlace
        horizontalAlignment: Text.AlignLeft
        wrapMode: Text.Wrap
        color: Theme.text
        font.pixelSize: Theme.body
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }

    TextField {
        id: search
        width: page.inner
        height: 48 * Theme.scale
        leftPadding: 18
        rightPadding: 18
        focus: true
        placeholderText: App.words.search
        placeholderTextColor: Theme.muted
        color: Theme.text
        selectionColor: Theme.accent
        selectedTextColor: Theme.accentText
        font.pixelSize: Theme.body
        Accessible.role: Accessible.EditableText
        Accessible.name: App.words.search
        Accessible.description: App.words.searchHint
        onTextEdited: App.search(text)
        Keys.onEscapePressed: {
            clear();
            App.search("");
        }
        onAccepted: if (App.found.count > 0) page.take(0)
        background: Rectangle {
            radius: height / 2
            color: Theme.card
            border.width: search.activeFocus ? 2 : 1
            border.color: search.activeFocus ? Theme.accent : Theme.outline
        }
    }
    PlainText {
        width: page.inner
        visible: App.found.count === 0 && App.searchNote === ""
        text: search.text.trim() !== "" && App.searchText === search.text.trim() ? App.words.noMatch : App.words.searchHint
        horizontalAlignment: Text.AlignLeft
        wrapMode: Text.Wrap
        color: Theme.muted
        font.pixelSize: Theme.small
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }

    function take(row) {
        App.addFound(row);
        search.clear();
        App.search("");
        page.chosen();
    }

    Card {
        visible: App.found.count > 0
        width: page.inner
        padding: Theme.space
        Column {
            width: parent.width
            Repeater {
                model: App.found
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
        text: App.searchNote
        horizontalAlignment: Text.AlignLeft
        wrapMode: Text.Wrap
        color: Theme.muted
        font.pixelSize: Theme.small
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
    Column {
        visible: App.searchText !== "" && search.text.trim() !== ""
        width: page.inner
        spacing: Theme.space / 2
        PlainButton {
            width: Math.min(implicitWidth, page.inner)
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
            font.pixelSize: Theme.small
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
    }

    UndoBar {
        visible: App.removed !== ""
        width: page.inner
    }

    HereCard {
        width: page.inner
        onChosen: page.chosen()
    }

    PlainText {
        width: page.inner
        visible: text !== ""
        text: App.problem
        horizontalAlignment: Text.AlignLeft
        wrapMode: Text.Wrap
        color: Theme.text
        font.pixelSize: Theme.body
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }

    Repeater {
        model: App.places
        PlaceRow {
            width: page.inner
            onChosen: page.chosen()
        }
    }
}
