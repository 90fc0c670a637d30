// One of a few values, side by side: a filter.
import QtQuick
import QtQuick.Controls.Basic
import NimbaraPages

Flow {
    id: choice

    property string title
    property alias values: values.model

    signal chosen(real value)

    spacing: 6
    Accessible.role: Accessible.Grouping
    Accessible.name: title

    PlainText {
        height: 32 * Theme.scale
        rightPadding: 4
        verticalAlignment: Text.AlignVCenter
        text: choice.title
        color: Theme.muted
        font.pixelSize: Theme.small
    }
    Repeater {
        id: values
        Pressable {
            id: option
            required property double value
            required property string caption
            required property bool isChosen
            width: label.implicitWidth + 22
            height: 32 * Theme.scale
            onClicked: choice.chosen(value)
            spokenRole: Accessible.RadioButton
            isCheckable: true
            isChecked: isChosen
            Accessible.name: choice.title + ": " + option.caption
            background: Rectangle {
                radius: height / 2
                color: option.isChosen ? Theme.accent : option.hovered ? Theme.raised : "transparent"
                border.width: option.visualFocus ? 2 : 1
                border.color: option.visualFocus ? Theme.text : option.isChosen ? Theme.accent : Theme.outline
            }
            contentItem: PlainText {
                id: label
                text: option.caption
                color: option.isChosen ? Theme.accentText : Theme.text
                font.pixelSize: Theme.small
                horizontalAlignment: Text.AlignHCenter
                verticalAlignment: Text.AlignVCenter
            }
        }
    }
}
