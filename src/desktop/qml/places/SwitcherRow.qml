// A row of the menu of places.
import QtQuick
import NimbaraPages
import NimbaraItems

Pressable {
    id: row

    required property int index
    required property string kind
    required property string target
    required property string title
    required property string detail
    required property string temperature
    required property string sky
    required property bool isDay
    required property string mark
    required property bool isSelected
    required property bool isFirstOfKind
    required property string sentence

    readonly property bool isPlace: kind === "place" || kind === "here"

    signal pointed(point position)

    implicitHeight: Math.max(52 * Theme.scale, words.height + 1.5 * Theme.space) + (isFirstOfKind ? Theme.space : 0)
    topPadding: isFirstOfKind ? Theme.space : 0
    hoverEnabled: true
    focusPolicy: Qt.NoFocus
    spokenRole: Accessible.ListItem
    isSelectable: true
    Accessible.name: sentence + (isSelected ? ", " + App.words.selected : "")

    HoverHandler {
        onPointChanged: if (hovered) row.pointed(point.scenePosition)
    }

    background: Item {
        Rectangle {
            visible: row.isFirstOfKind
            y: Theme.space / 2
            width: parent.width
            height: 1
            color: Theme.outline
        }
        Rectangle {
            y: row.topPadding
            width: parent.width
            height: parent.height - row.topPadding
            radius: 10
            color: row.isCurrent ? Theme.raised : "transparent"
            Rectangle {
                visible: row.isCurrent
                x: LayoutMirroring.enabled ? parent.width - width : 0
                y: 8
                width: 4
                height: parent.height - 16
                radius: 2
                color: Theme.accent
            }
        }
    }
    contentItem: Item {
        Item {
            id: lead
            x: Theme.space
            width: 34 * Theme.scale
            height: parent.height
            Glyph {
                anchors.centerIn: parent
                visible: row.isPlace
                size: 34 * Theme.scale
                sky: row.isPlace ? row.sky : ""
                isDay: row.isDay
                overDark: Theme.dark
            }
            Sign {
                anchors.centerIn: parent
                visible: !row.isPlace
                size: 20 * Theme.scale
                name: row.isPlace ? "" : ({ found: "plus", online: "search", locate: "here", manage: "place" })[row.kind] ?? ""
                ink: Theme.accent
            }
        }
        Column {
            id: words
            anchors.left: lead.right
            anchors.leftMargin: Theme.space
            anchors.right: tail.left
            anchors.rightMargin: Theme.space
            anchors.verticalCenter: parent.verticalCenter
            PlainText {
                width: parent.width
                text: row.title
                wrapMode: row.isPlace ? Text.NoWrap : Text.Wrap
                elide: Text.ElideRight
                horizontalAlignment: Text.AlignLeft
                color: Theme.text
                font.pixelSize: Theme.body
                font.weight: row.isSelected ? Font.DemiBold : Font.Normal
            }
            PlainText {
                width: parent.width
                visible: text !== ""
                text: row.detail
                wrapMode: row.isPlace ? Text.NoWrap : Text.Wrap
                elide: Text.ElideRight
                horizontalAlignment: Text.AlignLeft
                color: Theme.muted
                font.pixelSize: Theme.tiny
            }
        }
        Row {
            id: tail
            anchors.right: parent.right
            anchors.rightMargin: 1.5 * Theme.space
            anchors.verticalCenter: parent.verticalCenter
            spacing: Theme.space
            Sign {
                anchors.verticalCenter: parent.verticalCenter
                visible: row.isSelected
                size: 18 * Theme.scale
                name: "check"
                ink: Theme.accent
            }
            PlaceMark {
                anchors.verticalCenter: parent.verticalCenter
                visible: row.mark !== ""
                level: row.mark
            }
            PlainText {
                visible: text !== ""
                text: row.temperature
                color: Theme.text
                font.pixelSize: Theme.title
            }
        }
    }
}
