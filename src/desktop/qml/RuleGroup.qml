// A group of rules that opens to its settings; they are made when it is first opened.
import QtQuick
import QtQuick.Controls.Basic
import NimbaraPages

Rectangle {
    id: group

    required property string name
    required property string title
    required property string summary
    required property var notifications
    property bool isOpen: false

    height: header.height + (isOpen ? rows.height + Theme.space : 0)
    radius: Theme.radius
    color: Theme.card
    border.width: 1
    border.color: Theme.outline

    AbstractButton {
        id: header
        width: parent.width
        height: 60 * Theme.scale
        leftPadding: 2 * Theme.space
        rightPadding: 2 * Theme.space
        onClicked: group.isOpen = !group.isOpen
        Keys.onReturnPressed: clicked()
        Accessible.role: Accessible.Button
        Accessible.name: group.title + ", " + group.summary
        Accessible.checkable: true
        Accessible.checked: group.isOpen
        background: Rectangle {
            radius: Theme.radius
            color: header.hovered ? Qt.alpha(Theme.raised, 0.5) : "transparent"
            border.width: header.visualFocus ? 2 : 0
            border.color: Theme.accent
        }
        contentItem: Item {
            Text {
                anchors.left: parent.left
                anchors.verticalCenter: parent.verticalCenter
                width: parent.width - count.width - arrow.width - 3 * Theme.space
                text: group.title
                elide: Text.ElideRight
                horizontalAlignment: Text.AlignLeft
                color: Theme.text
                font.pixelSize: Theme.body
                font.weight: Font.DemiBold
            }
            Text {
                id: count
                anchors.right: arrow.left
                anchors.rightMargin: Theme.space
                anchors.verticalCenter: parent.verticalCenter
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
        x: 2 * Theme.space
        y: header.height
        width: parent.width - 4 * Theme.space
        height: item ? item.height : 0
        active: group.isOpen || item !== null
        visible: group.isOpen
        sourceComponent: Column {
            Repeater {
                model: group.notifications.rows(group.name)
                RuleRow {
                    width: rows.width
                    notifications: group.notifications
                }
            }
        }
    }
}
