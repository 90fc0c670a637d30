// A way to a page: a picture above its name.
import QtQuick
import NimbaraPages

Pressable {
    id: button

    property string sky
    property string sign  // where there is no sky

    implicitHeight: 56 * Theme.scale
    spokenRole: Accessible.PageTab
    isSelectable: true

    background: Rectangle {
        radius: Theme.radius * 0.75
        color: button.isCurrent ? Theme.raised : button.hovered ? Qt.alpha(Theme.raised, 0.5) : "transparent"
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
                overDark: Theme.dark
            }
            Sign {
                visible: button.sky === ""
                anchors.horizontalCenter: parent.horizontalCenter
                size: 26 * Theme.scale
                name: button.sign
                ink: Theme.accent
            }
            PlainText {
                width: parent.width
                horizontalAlignment: Text.AlignHCenter
                text: button.text
                elide: Text.ElideRight
                fontSizeMode: Text.HorizontalFit
                minimumPixelSize: 9
                color: button.isCurrent ? Theme.text : Theme.muted
                font.pixelSize: Theme.tiny
                font.weight: button.isCurrent ? Font.DemiBold : Font.Normal
            }
        }
    }
}
