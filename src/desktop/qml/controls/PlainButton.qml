// A button of text or of a sign.
import QtQuick
import NimbaraPages

Pressable {
    id: button

    property color ink: Theme.accent
    property string explanation: text
    property string sign
    property bool isMain: false  // what most will choose

    implicitHeight: Math.max(36 * Theme.scale, sign !== "" ? 0 : label.contentHeight + 12 * Theme.scale)
    leftPadding: sign !== "" ? 9 : 12
    rightPadding: leftPadding
    font.pixelSize: Theme.small
    font.weight: Font.DemiBold
    Accessible.name: explanation

    contentItem: Item {
        implicitWidth: button.sign !== "" ? picture.width : label.implicitWidth
        implicitHeight: label.implicitHeight
        opacity: button.enabled ? 1 : 0.4
        PlainText {
            id: label
            anchors.fill: parent
            visible: button.sign === ""
            text: button.text
            font: button.font
            wrapMode: Text.Wrap
            color: button.isMain ? Theme.accentText : button.ink
            horizontalAlignment: Text.AlignHCenter
            verticalAlignment: Text.AlignVCenter
        }
        Sign {
            id: picture
            anchors.centerIn: parent
            size: 18 * Theme.scale
            name: button.sign
            ink: button.ink
        }
    }
    background: Rectangle {
        radius: height / 2
        color: button.ink
        opacity: button.isMain ? (button.down ? 0.8 : button.hovered ? 0.9 : 1) : button.down ? 0.24 : button.hovered ? 0.16 : 0.09
        border.width: button.visualFocus ? 2 : 0
        border.color: button.isMain ? Theme.text : button.ink
    }
}
