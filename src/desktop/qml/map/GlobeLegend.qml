// What is on the globe, to be switched, and a way to a satellite by its name.
import QtQuick
import QtQuick.Controls.Basic
import NimbaraPages
import NimbaraItems

Rectangle {
    id: legend

    property real most: 600
    readonly property bool isSearching: search.text.trim() !== ""
    signal chosen

    height: content.height + 3 * Theme.space
    radius: Theme.radius
    color: Qt.alpha(Theme.card, 0.96)
    border.width: 1
    border.color: Theme.outline

    MouseArea { anchors.fill: parent }

    Column {
        id: content
        x: 1.5 * Theme.space
        y: 1.5 * Theme.space
        width: parent.width - 3 * Theme.space
        spacing: Theme.space

        TextField {
            id: search
            width: parent.width
            height: 38 * Theme.scale
            leftPadding: 14
            placeholderText: App.globe.words.search
            placeholderTextColor: Theme.muted
            color: Theme.text
            selectionColor: Theme.accent
            selectedTextColor: Theme.accentText
            font.pixelSize: Theme.small
            Accessible.role: Accessible.EditableText
            Accessible.name: App.globe.words.search
            onTextEdited: App.globe.search(text)
            Keys.onEscapePressed: legend.leave()
            Keys.onDownPressed: if (legend.isSearching && found.count > 0) found.itemAtIndex(0)?.forceActiveFocus()
            onAccepted: if (legend.isSearching && App.globe.matches.count > 0) legend.take(0)
            background: Rectangle {
                radius: height / 2
                color: Theme.page
                border.width: search.activeFocus ? 2 : 1
                border.color: search.activeFocus ? Theme.accent : Theme.outline
            }
        }

        PlainText {
            width: parent.width
            visible: legend.isSearching && App.globe.matches.count === 0
            text: App.globe.words.noMatch
            wrapMode: Text.Wrap
            color: Theme.muted
            font.pixelSize: Theme.small
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }

        ListView {
            id: found
            width: parent.width
            height: Math.min(contentHeight, Math.max(80, legend.most - search.height - 5 * Theme.space))
            visible: legend.isSearching
            clip: true
            model: legend.isSearching ? App.globe.matches : null
            keyNavigationEnabled: true
            ScrollBar.vertical: ThinBar {}

            delegate: Pressable {
                id: match
                required property int index
                required property string name
                required property string group
                required property string colour
                width: ListView.view.width
                height: 44 * Theme.scale
                onClicked: legend.take(index)
                Keys.onEscapePressed: legend.leave()
                Keys.onDownPressed: nextItemInFocusChain(true)?.forceActiveFocus()
                Keys.onUpPressed: nextItemInFocusChain(false)?.forceActiveFocus()
                Accessible.name: name + ", " + group
                background: Rectangle {
                    radius: 8
                    color: match.hovered || match.visualFocus ? Theme.raised : "transparent"
                    border.width: match.visualFocus ? 2 : 0
                    border.color: Theme.accent
                }
                contentItem: Item {
                    Rectangle {
                        id: dot
                        anchors.verticalCenter: parent.verticalCenter
                        width: 8
                        height: 8
                        radius: 4
                        color: match.colour
                    }
                    Column {
                        anchors.verticalCenter: parent.verticalCenter
                        anchors.left: dot.right
                        anchors.leftMargin: 10
                        anchors.right: parent.right
                        PlainText {
                            width: parent.width
                            text: match.name
                            elide: Text.ElideRight
                            color: Theme.text
                            font.pixelSize: Theme.small
                        }
                        PlainText {
                            width: parent.width
                            text: match.group
                            elide: Text.ElideRight
                            color: Theme.muted
                            font.pixelSize: Theme.tiny
                        }
                    }
                }
            }
        }

        Flickable {
            id: layers
            width: parent.width
            height: Math.min(contentHeight, Math.max(80, legend.most - search.height - 5 * Theme.space))
            visible: !legend.isSearching
            contentHeight: rows.height
            clip: true
            boundsBehavior: Flickable.StopAtBounds
            ScrollBar.vertical: ThinBar {}

            // Whoever walks with the keys sees where they are.
            function reveal(row) {
                contentY = Math.max(Math.min(contentY, row.y), row.y + row.height - height);
            }

            Column {
                id: rows
                width: parent.width

                Repeater {
                    model: App.globe.legend

                    Pressable {
                        id: row
                        required property string name
                        required property string title
                        required property string count
                        required property string colour
                        required property bool isOn
                        required property string note
                        required property string sentence
                        width: parent.width
                        height: Math.max(34 * Theme.scale, texts.implicitHeight + 12)
                        onClicked: App.globe.toggle(name)
                        onVisualFocusChanged: if (visualFocus) layers.reveal(row)
                        spokenRole: Accessible.CheckBox
                        isCheckable: true
                        isChecked: isOn
                        Accessible.name: sentence
                        background: Rectangle {
                            radius: 8
                            color: row.hovered ? Theme.raised : "transparent"
                            border.width: row.visualFocus ? 2 : 0
                            border.color: Theme.accent
                        }
                        contentItem: Item {
                            Rectangle {
                                id: sign
                                x: row.mirrored ? parent.width - width - 2 : 2
                                anchors.verticalCenter: parent.verticalCenter
                                width: 12
                                height: 12
                                radius: 6
                                color: row.isOn ? row.colour : "transparent"
                                border.width: row.isOn && !Theme.dark ? 1 : 1.5
                                border.color: row.isOn ? Qt.darker(row.colour, 1.35) : Theme.muted
                            }
                            Column {
                                id: texts
                                anchors.verticalCenter: parent.verticalCenter
                                anchors.left: parent.left
                                anchors.leftMargin: 24
                                anchors.right: number.left
                                anchors.rightMargin: 6
                                PlainText {
                                    width: parent.width
                                    text: row.title
                                    elide: Text.ElideRight
                                    color: row.isOn ? Theme.text : Theme.muted
                                    font.pixelSize: Theme.small
                                }
                                PlainText {
                                    width: parent.width
                                    visible: row.note !== ""
                                    text: row.note
                                    wrapMode: Text.Wrap
                                    maximumLineCount: 2
                                    elide: Text.ElideRight
                                    color: Theme.muted
                                    font.pixelSize: Theme.tiny
                                }
                            }
                            PlainText {
                                id: number
                                anchors.verticalCenter: parent.verticalCenter
                                anchors.right: parent.right
                                text: row.count
                                color: Theme.muted
                                font.pixelSize: Theme.tiny
                            }
                        }
                    }
                }
            }
        }
    }

    function take(row) {
        App.globe.chooseMatch(row);
        leave();
        chosen();
    }
    function leave() {
        search.clear();
        App.globe.search("");
    }
}
