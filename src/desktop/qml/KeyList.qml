// The keys and what they do.
import QtQuick
import QtQuick.Templates as T
import NimbaraPages
import NimbaraItems

T.Popup {
    id: popup

    readonly property var rows: [
        { keys: "Ctrl+1 – Ctrl+9", what: App.words.keyPages },
        { keys: "Ctrl+K", what: App.words.switchPlace },
        { keys: "Alt+←, Alt+→", what: App.words.keyStepPlace },
        { keys: "Ctrl+F", what: App.words.search },
        { keys: "F5, Ctrl+R", what: App.words.refresh },
        { keys: "F6", what: App.words.keyAreas },
        { keys: "Tab, ↑ ↓", what: App.words.keyStep },
        { keys: "Enter", what: App.words.keyPress },
        { keys: "← →", what: App.words.keyRead },
        { keys: "↑ ↓ ← →, +, −, Home", what: App.words.keyMap },
        { keys: "PgUp, PgDn, Home, End", what: App.words.keyScroll },
        { keys: "Ctrl+↑, Ctrl+↓", what: App.words.keyMovePlace },
        { keys: "F2", what: App.words.rename },
        { keys: "Ctrl+Z", what: App.words.undo },
        { keys: "Del", what: App.words.keyRemovePlace },
        { keys: "?, F1", what: App.words.keyList },
        { keys: "Ctrl+Q", what: App.words.keyQuit }
    ]

    parent: T.Overlay.overlay
    anchors.centerIn: parent
    width: parent ? Math.min(560 * Theme.scale, parent.width - 4 * Theme.space) : 0
    height: parent ? Math.min(implicitHeight, parent.height - 4 * Theme.space) : 0
    implicitHeight: list.contentHeight + topPadding + bottomPadding
    modal: true
    focus: true
    padding: 2 * Theme.space
    T.Overlay.modal: Rectangle { color: Qt.rgba(0, 0, 0, 0.4) }
    background: Rectangle {
        radius: Theme.radius
        color: Theme.card
        border.color: Theme.outline
    }
    contentItem: Flickable {
        id: list
        contentHeight: all.height
        clip: true
        focus: true
        boundsBehavior: Flickable.StopAtBounds
        T.ScrollBar.vertical: ThinBar {}
        Keys.onUpPressed: contentY = Math.max(0, contentY - 60)
        Keys.onDownPressed: contentY = Math.min(Math.max(0, contentHeight - height), contentY + 60)

        Column {
            id: all
            width: list.width
            spacing: Theme.space

            Item {
                width: parent.width
                height: Math.max(heading.height, close.height)
                PlainText {
                    id: heading
                    anchors.left: parent.left
                    anchors.verticalCenter: parent.verticalCenter
                    width: parent.width - close.width - Theme.space
                    text: App.words.keysTitle
                    wrapMode: Text.Wrap
                    horizontalAlignment: Text.AlignLeft
                    color: Theme.text
                    font.pixelSize: Theme.title
                    font.weight: Font.DemiBold
                    Accessible.role: Accessible.Heading
                    Accessible.name: text
                }
                PlainButton {
                    id: close
                    anchors.right: parent.right
                    sign: "cross"
                    explanation: App.globe.words.close
                    onClicked: popup.close()
                }
            }
            Repeater {
                model: popup.rows
                Item {
                    id: row
                    required property var modelData
                    readonly property bool isTight: width < 380 * Theme.scale
                    width: all.width
                    height: isTight ? keys.height + what.height : Math.max(keys.height, what.height)
                    Accessible.role: Accessible.ListItem
                    Accessible.name: modelData.keys + ": " + modelData.what
                    PlainText {
                        id: keys
                        anchors.left: parent.left
                        width: row.isTight ? parent.width : 190 * Theme.scale
                        text: row.modelData.keys
                        wrapMode: Text.Wrap
                        horizontalAlignment: Text.AlignLeft
                        color: Theme.accent
                        font.pixelSize: Theme.body
                    }
                    PlainText {
                        id: what
                        anchors.right: parent.right
                        y: row.isTight ? keys.height : 0
                        width: row.isTight ? parent.width : parent.width - keys.width
                        text: row.modelData.what
                        wrapMode: Text.Wrap
                        horizontalAlignment: Text.AlignLeft
                        color: Theme.text
                        font.pixelSize: Theme.body
                    }
                }
            }
        }
    }
}
