// What is in the air, one line each: its amount, the band of it alone, and a bar.
import QtQuick
import NimbaraItems
import NimbaraPages

Card {
    id: card

    property var parts
    property string lead
    property string note

    Column {
        width: parent.width
        spacing: 1.25 * Theme.space

        AirWords { text: card.lead }
        Repeater {
            model: card.parts
            Column {
                id: part
                required property string name
                required property string value
                required property string note
                required property double share
                required property double colour
                width: parent.width
                spacing: 4
                Accessible.role: Accessible.StaticText
                Accessible.name: Theme.joined([part.name + ": " + part.value, part.note], ", ")

                Item {
                    width: parent.width
                    height: Math.max(label.height, amount.y + amount.height)
                    readonly property bool isTight: label.implicitWidth + amount.implicitWidth + Theme.space > width
                    PlainText {
                        id: label
                        anchors.left: parent.left
                        width: parent.isTight ? parent.width : implicitWidth
                        text: part.name.charAt(0).toUpperCase() + part.name.slice(1)
                        wrapMode: Text.Wrap
                        horizontalAlignment: Text.AlignLeft
                        color: Theme.text
                        font.pixelSize: Theme.body
                    }
                    PlainText {
                        id: amount
                        anchors.right: parent.right
                        y: parent.isTight ? label.height : 0
                        width: parent.isTight ? parent.width : implicitWidth
                        text: Theme.joined([part.value, part.note], "  ·  ")
                        wrapMode: Text.Wrap
                        horizontalAlignment: Text.AlignLeft
                        color: Theme.muted
                        font.pixelSize: Theme.small
                    }
                }
                Rectangle {
                    width: parent.width
                    height: 6
                    radius: 3
                    color: Theme.raised
                    Rectangle {
                        anchors.left: parent.left
                        visible: part.share > 0
                        width: Math.max(6, parent.width * Math.min(1, part.share))
                        height: parent.height
                        radius: 3
                        color: part.colour < 0 ? Theme.wind : Theme.airColours[part.colour]
                    }
                }
            }
        }
        AirWords {
            text: card.note
            color: Theme.muted
            font.pixelSize: Theme.tiny
        }
    }
}
