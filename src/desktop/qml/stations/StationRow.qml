// A station that can be chosen: its name, what it measures, and how old that is.
import QtQuick
import NimbaraPages

Pressable {
    id: row

    property string name
    property string values
    property string detail
    property string sentence
    property bool isChosen: false
    property bool isTroubled: false

    implicitHeight: words.height + 2 * Theme.space
    spokenRole: Accessible.RadioButton
    isCheckable: true
    isChecked: isChosen
    Accessible.name: sentence

    background: Rectangle {
        radius: 10
        color: row.hovered ? Theme.raised : "transparent"
        border.width: row.visualFocus ? 2 : 0
        border.color: Theme.accent
    }
    contentItem: Item {
        opacity: row.enabled ? 1 : 0.6
        Rectangle {
            id: mark
            anchors.left: parent.left
            anchors.leftMargin: Theme.space
            anchors.verticalCenter: parent.verticalCenter
            width: 20 * Theme.scale
            height: width
            radius: width / 2
            color: "transparent"
            border.width: 2
            border.color: row.isChosen ? Theme.accent : Theme.muted
            Rectangle {
                anchors.centerIn: parent
                visible: row.isChosen
                width: parent.width / 2
                height: width
                radius: width / 2
                color: Theme.accent
            }
        }
        StationWords {
            id: words
            anchors.left: mark.right
            anchors.leftMargin: 1.5 * Theme.space
            anchors.right: parent.right
            anchors.rightMargin: Theme.space
            anchors.verticalCenter: parent.verticalCenter
            name: row.name
            values: row.values
            detail: row.detail
            isTroubled: row.isTroubled
        }
    }
}
