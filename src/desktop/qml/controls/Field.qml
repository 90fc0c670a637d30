// A line to type in.
import QtQuick
import QtQuick.Controls.Basic
import NimbaraPages

TextField {
    id: field

    property string title

    implicitHeight: 36 * Theme.scale
    leftPadding: 12
    rightPadding: 12
    verticalAlignment: TextInput.AlignVCenter
    color: Theme.text
    placeholderTextColor: Theme.muted
    selectionColor: Theme.accent
    selectedTextColor: Theme.accentText
    selectByMouse: true
    font.pixelSize: Theme.body
    Accessible.role: Accessible.EditableText
    Accessible.name: title
    background: Rectangle {
        radius: 10
        color: Theme.page
        border.width: field.activeFocus ? 2 : 1
        border.color: field.activeFocus ? Theme.accent : Theme.outline
    }
}
