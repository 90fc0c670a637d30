// The current location: asked for on demand, then a place like the others.
import QtQuick
import QtQuick.Controls.Basic
import NimbaraPages

Rectangle {
    id: card

    readonly property var here: app.here

    readonly property bool isTight: content.width < 320 * Theme.scale && picture.visible

    signal chosen

    implicitHeight: content.height + 3 * Theme.space
    radius: Theme.radius
    color: Theme.card
    border.width: here.isSelected || choose.visualFocus ? 2 : 1
    border.color: here.isSelected || choose.visualFocus ? Theme.accent : Theme.outline

    AbstractButton {
        id: choose
        anchors.fill: parent
        enabled: card.here.isOffered
        visible: enabled
        onClicked: {
            app.selectHere();
            card.chosen();
        }
        Keys.onReturnPressed: clicked()
        Keys.onDeletePressed: app.removeHere()
        Accessible.role: Accessible.Button
        Accessible.name: card.here.sentence + (card.here.isSelected ? ", " + app.words.selected : "")
    }
    Column {
        id: content
        x: 2 * Theme.space
        y: 1.5 * Theme.space
        width: parent.width - 4 * Theme.space
        spacing: Theme.space

        Item {
            width: parent.width
            height: card.isTight ? names.height + picture.height : Math.max(names.height, picture.visible ? picture.height : 0)
            Sign {
                id: sign
                anchors.left: parent.left
                anchors.verticalCenter: names.verticalCenter
                size: 24 * Theme.scale
                name: "here"
                ink: Theme.accent
            }
            Column {
                id: names
                anchors.left: sign.right
                anchors.leftMargin: 1.5 * Theme.space
                y: card.isTight ? 0 : (parent.height - height) / 2
                width: parent.width - sign.width - (picture.visible && !card.isTight ? picture.width + warmth.width + 2 * Theme.space : 0) - 2 * Theme.space
                PlainText {
                    width: parent.width
                    text: card.here.name || app.words.here
                    wrapMode: Text.Wrap
                    maximumLineCount: 3
                    elide: Text.ElideRight
                    horizontalAlignment: Text.AlignLeft
                    color: Theme.text
                    font.pixelSize: Theme.title
                    font.weight: Font.DemiBold
                }
                PlainText {
                    width: parent.width
                    visible: text !== ""
                    text: [card.here.name === app.words.here ? "" : card.here.isOffered ? app.words.here : "", card.here.area].filter(part => part).join("  ·  ")
                    wrapMode: Text.Wrap
                    horizontalAlignment: Text.AlignLeft
                    color: Theme.muted
                    font.pixelSize: Theme.small
                }
            }
            Glyph {
                id: picture
                visible: card.here.temperature !== ""
                anchors.right: warmth.left
                anchors.rightMargin: Theme.space
                y: card.isTight ? names.height : (parent.height - height) / 2
                size: 42 * Theme.scale
                sky: card.here.sky
                isDay: card.here.isDay
                onDark: Theme.dark
            }
            PlainText {
                id: warmth
                anchors.right: parent.right
                anchors.verticalCenter: picture.verticalCenter
                text: card.here.temperature
                color: Theme.text
                font.pixelSize: Theme.headline
                font.weight: Font.Light
            }
        }
        PlainText {
            width: parent.width
            visible: text !== ""
            text: card.here.note
            wrapMode: Text.Wrap
            horizontalAlignment: Text.AlignLeft
            color: card.here.isTroubled ? Theme.text : Theme.muted
            font.pixelSize: Theme.small
            Accessible.role: card.here.isTroubled ? Accessible.AlertMessage : Accessible.StaticText
            Accessible.name: text
        }
        Flow {
            width: parent.width
            spacing: Theme.space
            PlainButton {
                text: card.here.isOffered ? app.words.findHereAgain : app.words.findHere
                enabled: !card.here.isAsking
                onClicked: app.locate()
            }
            PlainButton {
                visible: card.here.isOffered
                sign: "cross"
                explanation: app.words.removeHere
                onClicked: app.removeHere()
            }
        }
    }
}
