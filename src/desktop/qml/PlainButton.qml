// A button of text.
import QtQuick
import QtQuick.Controls.Basic
import NimbaraPages

Button {
    id: button

    property color ink: Theme.accent
    property string explanation: text

    implicitHeight: Math.max(36, 36 * Theme.scale)
    leftPadding: 12
    rightPadding: 12
    font.pixelSize: Theme.small
    font.weight: Font.DemiBold
    Accessible.role: Accessible.Button
    Accessible.name: explanation
    Keys.onReturnPressed: clicked()

    contentItem: Text {
        text: button.text
        font: button.font
        color: button.ink
        opacity: button.enabled ? 1 : 0.4
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
    }
    background: Rectangle {
        radius: height / 2
        color: button.ink
        opacity: button.down ? 0.24 : button.hovered ? 0.16 : 0.09
        border.width: button.visualFocus ? 2 : 0
        border.color: button.ink
    }
}
