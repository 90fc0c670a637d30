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

    most: 760

    Text {
        width: page.inner
        text: app.words.places
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
        selectedTextColor: Theme.overAccent
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
    Text {
        width: page.inner
        visible: app.found.count === 0
        text: search.text.trim() !== "" && app.searchText === search.text.trim() ? app.words.noMatch : app.words.searchHint
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
                AbstractButton {
                    id: match
                    required property int index
                    required property string name
                    required property string area
                    required property bool isSaved
                    required property string sentence
                    width: parent.width
                    height: 52 * Theme.scale
                    onClicked: page.take(index)
                    Keys.onReturnPressed: clicked()
                    Accessible.role: Accessible.Button
                    Accessible.name: sentence + ", " + (isSaved ? app.words.saved : app.words.add)
                    background: Rectangle {
                        radius: 10
                        color: match.hovered ? Theme.raised : "transparent"
                        border.width: match.visualFocus ? 2 : 0
                        border.color: Theme.accent
                    }
                    contentItem: Item {
                        Column {
                            anchors.verticalCenter: parent.verticalCenter
                            x: 1.5 * Theme.space
                            width: parent.width - sign.width - 4 * Theme.space
                            Text {
                                width: parent.width
                                text: match.name
                                elide: Text.ElideRight
                                color: Theme.text
                                font.pixelSize: Theme.body
                            }
                            Text {
                                width: parent.width
                                text: match.area
                                elide: Text.ElideRight
                                color: Theme.muted
                                font.pixelSize: Theme.tiny
                            }
                        }
                        Text {
                            id: sign
                            anchors.right: parent.right
                            anchors.rightMargin: 1.5 * Theme.space
                            anchors.verticalCenter: parent.verticalCenter
                            text: match.isSaved ? app.words.saved : "+ " + app.words.add
                            color: match.isSaved ? Theme.muted : Theme.accent
                            font.pixelSize: Theme.small
                            font.weight: Font.DemiBold
                        }
                    }
                }
            }
        }
    }

    Text {
        width: page.inner
        visible: text !== ""
        text: app.problem || (app.isReady && app.places.count === 0 ? app.words.noPlaces : "")
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
