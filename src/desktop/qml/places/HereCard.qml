// The current location: asked for on demand, then a place like the others.
import QtQuick
import QtQuick.Controls.Basic
import NimbaraPages
import NimbaraItems

Rectangle {
    id: card


    readonly property bool isTight: content.width < 320 * Theme.scale && picture.visible

    signal chosen

    implicitHeight: content.height + 3 * Theme.space
    radius: Theme.radius
    color: Theme.card
    border.width: choose.visualFocus ? 3 : 1
    border.color: choose.visualFocus ? Theme.accent : Theme.outline

    Rectangle {
        visible: App.here.isSelected
        anchors.left: parent.left
        anchors.leftMargin: 5
        anchors.verticalCenter: parent.verticalCenter
        width: 5
        height: parent.height - 28
        radius: 2.5
        color: Theme.accent
    }

    Pressable {
        id: choose
        anchors.fill: parent
        enabled: App.here.isOffered
        visible: enabled
        onClicked: {
            App.selectHere();
            card.chosen();
        }
        Keys.onDeletePressed: App.removeHere()
        Accessible.name: App.here.sentence + (App.here.isSelected ? ", " + App.words.selected : "")
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
                    text: App.here.name || App.words.here
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
                    text: Theme.joined([App.here.name === App.words.here ? "" : App.here.isOffered ? App.words.here : "", App.here.area], "  ·  ")
                    wrapMode: Text.Wrap
                    horizontalAlignment: Text.AlignLeft
                    color: Theme.muted
                    font.pixelSize: Theme.small
                }
            }
            Glyph {
                id: picture
                visible: App.here.temperature !== ""
                anchors.right: warmth.left
                anchors.rightMargin: Theme.space
                y: card.isTight ? names.height : (parent.height - height) / 2
                size: 42 * Theme.scale
                sky: App.here.sky
                isDay: App.here.isDay
                overDark: Theme.dark
            }
            PlainText {
                id: warmth
                anchors.right: parent.right
                anchors.verticalCenter: picture.verticalCenter
                text: App.here.temperature
                color: Theme.text
                font.pixelSize: Theme.headline
                font.weight: Font.Light
            }
        }
        PlainText {
            width: parent.width
            visible: text !== ""
            text: App.here.note
            wrapMode: Text.Wrap
            horizontalAlignment: Text.AlignLeft
            color: App.here.isTroubled ? Theme.text : Theme.muted
            font.pixelSize: Theme.small
            Accessible.role: App.here.isTroubled ? Accessible.AlertMessage : Accessible.StaticText
            Accessible.name: text
        }
        Flow {
            width: parent.width
            spacing: Theme.space
            PlainButton {
                text: App.here.isOffered ? App.words.findHereAgain : App.words.findHere
                enabled: !App.here.isAsking
                onClicked: App.locate()
            }
            PlainButton {
                visible: App.here.isOffered
                sign: "cross"
                explanation: App.words.removeHere
                onClicked: App.removeHere()
            }
        }
    }
}
