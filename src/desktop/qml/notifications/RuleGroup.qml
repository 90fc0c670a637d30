// A group of rules that opens to its settings; they are made when it is first opened.
import QtQuick
import QtQuick.Controls.Basic
import NimbaraPages
import NimbaraItems

Item {
    id: group

    required property string name
    required property string title
    required property string summary
    property bool isOpen: false

    required property int index

    height: header.height + (isOpen ? rows.height + Theme.space : 0)

    Rectangle {
        width: parent.width
        height: 1
        visible: group.index > 0
        color: Theme.outline
    }

    Pressable {
        id: header
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.margins: -Theme.space
        leftPadding: Theme.space
        rightPadding: Theme.space
        topPadding: 2 * Theme.space
        bottomPadding: 2 * Theme.space
        onClicked: group.isOpen = !group.isOpen
        isExpandable: true
        isExpanded: group.isOpen
        Accessible.name: group.title + ", " + group.summary
        background: Rectangle {
            anchors.fill: parent
            anchors.topMargin: 4
            anchors.bottomMargin: 4
            radius: 10
            color: header.hovered ? Qt.alpha(Theme.raised, 0.5) : "transparent"
            border.width: header.visualFocus ? 2 : 0
            border.color: Theme.accent
        }
        contentItem: Item {
            id: heading
            // Large letters in a narrow window leave no room beside each other.
            readonly property bool isTight: width < 240 * Theme.scale
            implicitHeight: Math.max(name.height + (isTight ? count.height + 2 : 0), arrow.height)
            PlainText {
                id: name
                anchors.left: parent.left
                y: heading.isTight ? 0 : (parent.height - height) / 2
                width: parent.width - arrow.width - Theme.space - (heading.isTight ? 0 : count.width + 2 * Theme.space)
                text: group.title
                wrapMode: Text.Wrap
                horizontalAlignment: Text.AlignLeft
                color: Theme.text
                font.pixelSize: Theme.body
                font.weight: Font.DemiBold
            }
            PlainText {
                id: count
                // No anchors: changed together they would leave a width behind.
                readonly property real besideArrow: parent.width - arrow.width - Theme.space - width
                x: heading.isTight !== LayoutMirroring.enabled ? (heading.isTight ? 0 : parent.width - width - besideArrow)
                                                               : (heading.isTight ? parent.width - width : besideArrow)
                y: heading.isTight ? name.height + 2 : (parent.height - height) / 2
                text: group.summary
                color: Theme.muted
                font.pixelSize: Theme.small
            }
            Sign {
                id: arrow
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                size: 20 * Theme.scale
                name: group.isOpen ? "up" : "down"
                ink: Theme.muted
            }
        }
    }

    Loader {
        id: rows
        y: header.height
        width: parent.width
        height: item ? (item as Item).implicitHeight : 0  // a height of its own would stay what it was at first
        active: group.isOpen || item !== null
        visible: group.isOpen
        sourceComponent: Column {
            Repeater {
                model: App.notifications.rows(group.name)
                RuleRow {
                    width: rows.width
                }
            }
        }
    }
}
