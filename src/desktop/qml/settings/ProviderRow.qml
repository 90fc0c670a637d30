// A forecast service that can be asked first, with what became of the last attempts.
import QtQuick
import QtQuick.Controls.Basic
import NimbaraPages
import NimbaraItems

Pressable {
    id: provider

    required property string value
    required property string name
    required property string report
    required property bool isChosen
    required property bool isTroubled
    required property string sentence

    implicitHeight: words.height + 2 * Theme.space
    onClicked: App.settings.change("preferredProvider", value)
    spokenRole: Accessible.RadioButton
    isCheckable: true
    isChecked: isChosen
    Accessible.name: sentence

    background: Rectangle {
        radius: 10
        color: provider.hovered ? Theme.raised : "transparent"
        border.width: provider.visualFocus ? 2 : 0
        border.color: Theme.accent
    }
    contentItem: Item {
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
            border.color: provider.isChosen ? Theme.accent : Theme.muted
            Rectangle {
                anchors.centerIn: parent
                visible: provider.isChosen
                width: parent.width / 2
                height: width
                radius: width / 2
                color: Theme.accent
            }
        }
        Column {
            id: words
            anchors.left: mark.right
            anchors.leftMargin: 1.5 * Theme.space
            anchors.right: parent.right
            anchors.rightMargin: Theme.space
            anchors.verticalCenter: parent.verticalCenter
            spacing: 2
            PlainText {
                width: parent.width
                text: provider.name
                wrapMode: Text.Wrap
                horizontalAlignment: Text.AlignLeft
                color: Theme.text
                font.pixelSize: Theme.body
            }
            PlainText {
                width: parent.width
                text: provider.report
                wrapMode: Text.Wrap
                maximumLineCount: 12
                elide: Text.ElideRight
                horizontalAlignment: Text.AlignLeft
                color: provider.isTroubled ? Theme.danger : Theme.muted
                font.pixelSize: Theme.small
            }
        }
    }
}
