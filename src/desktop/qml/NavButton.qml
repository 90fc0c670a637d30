// A way to a page: a picture above its name.
import QtQuick
import QtQuick.Controls.Basic
import NimbaraPages

AbstractButton {
    id: button

    property string sky

    implicitHeight: 56 * Theme.scale
    checkable: false
    Accessible.role: Accessible.PageTab
    Accessible.name: text
    Accessible.selected: checked

    background: Rectangle {
        radius: Theme.radius * 0.75
        color: button.checked ? Theme.raised : button.hovered ? Qt.alpha(Theme.raised, 0.5) : "transparent"
        border.width: button.visualFocus ? 2 : 0
        border.color: Theme.accent
    }
    contentItem: Item {
        Column {
            anchors.centerIn: parent
            width: parent.width
            spacing: 1

            Glyph {
                visible: button.sky !== ""
                anchors.horizontalCenter: parent.horizontalCenter
                size: 26 * Theme.scale
                sky: button.sky
                isDay: true
                onDark: Theme.dark
            }
            Item {
                visible: button.sky === ""
                anchors.horizontalCenter: parent.horizontalCenter
                width: 26 * Theme.scale
                height: width
                Rectangle {
                    x: parent.width * 0.22
                    y: parent.height * 0.12
                    width: parent.width * 0.56
                    height: width
                    radius: width / 2
                    color: "transparent"
                    border.width: parent.width * 0.13
                    border.color: Theme.accent
                }
                Rectangle {
                    anchors.horizontalCenter: parent.horizontalCenter
                    y: parent.height * 0.64
                    width: parent.width * 0.13
                    height: parent.height * 0.28
                    radius: width / 2
                    color: Theme.accent
                }
            }
            Text {
                width: parent.width
                horizontalAlignment: Text.AlignHCenter
                text: button.text
                elide: Text.ElideRight
                color: button.checked ? Theme.text : Theme.muted
                font.pixelSize: Theme.tiny
                font.weight: button.checked ? Font.DemiBold : Font.Normal
            }
        }
    }
}
