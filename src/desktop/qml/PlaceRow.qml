// A saved place with its small forecast.
import QtQuick
import QtQuick.Controls.Basic
import NimbaraPages
import NimbaraItems

Rectangle {
    id: place

    required property int index
    required property string placeId
    required property string name
    required property string area
    required property bool isSelected
    required property string temperature
    required property string range
    required property string sky
    required property bool isDay
    required property string age
    required property string warnings
    required property string warningsState
    required property string sentence
    required property string notifications

    readonly property bool isTight: content.width < 280 * Theme.scale

    signal chosen

    height: content.height + 3 * Theme.space
    radius: Theme.radius
    color: Theme.card
    border.width: isSelected || choose.visualFocus ? 2 : 1
    border.color: isSelected || choose.visualFocus ? Theme.accent : Theme.outline

    function move(by) {
        App.movePlace(placeId, index + 1 + by);
    }

    AbstractButton {
        id: choose
        anchors.fill: parent
        onClicked: {
            App.selectPlace(place.placeId);
            place.chosen();
        }
        Keys.onReturnPressed: clicked()
        Keys.onDeletePressed: App.removePlace(place.placeId)
        Keys.onPressed: event => {
            if (!(event.modifiers & Qt.ControlModifier))
                return;
            if (event.key === Qt.Key_Up && place.index > 0)
                place.move(-1);
            else if (event.key === Qt.Key_Down && place.index < App.places.count - 1)
                place.move(1);
            else
                return;
            event.accepted = true;
        }
        Accessible.role: Accessible.Button
        Accessible.name: place.sentence + (place.isSelected ? ", " + App.words.selected : "")
    }

    Column {
        id: content
        x: 2 * Theme.space
        y: 1.5 * Theme.space
        width: parent.width - 4 * Theme.space
        spacing: 4

        Item {
            width: parent.width
            height: place.isTight ? names.height + picture.height : Math.max(names.height, picture.height)
            Column {
                id: names
                anchors.left: parent.left
                y: place.isTight ? 0 : (parent.height - height) / 2
                width: place.isTight ? parent.width : parent.width - picture.width - warmth.width - 2 * Theme.space
                PlainText {
                    width: parent.width
                    text: place.name
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
                    text: place.area
                    wrapMode: Text.Wrap
                    maximumLineCount: 2
                    elide: Text.ElideRight
                    horizontalAlignment: Text.AlignLeft
                    color: Theme.muted
                    font.pixelSize: Theme.small
                }
            }
            Glyph {
                id: picture
                anchors.right: warmth.left
                anchors.rightMargin: Theme.space
                y: place.isTight ? names.height : (parent.height - height) / 2
                size: 42 * Theme.scale
                sky: place.sky
                isDay: place.isDay
                overDark: Theme.dark
            }
            PlainText {
                id: warmth
                anchors.right: parent.right
                anchors.verticalCenter: picture.verticalCenter
                text: place.temperature
                color: Theme.text
                font.pixelSize: Theme.headline
                font.weight: Font.Light
            }
        }
        PlainText {
            visible: place.warnings !== ""
            width: parent.width
            text: place.warnings
            wrapMode: Text.Wrap
            maximumLineCount: 3
            elide: Text.ElideRight
            horizontalAlignment: Text.AlignLeft
            color: place.warningsState === "none" || place.warningsState === "uncovered" ? Theme.muted : Theme.text
            font.pixelSize: Theme.tiny
        }
        Item {
            readonly property bool isTight: remark.implicitWidth > width - buttons.width - Theme.space
            width: parent.width
            height: isTight ? remark.height + buttons.height + 4 : Math.max(remark.height, buttons.height)
            PlainText {
                id: remark
                anchors.left: parent.left
                y: parent.isTight ? 0 : (parent.height - height) / 2
                width: parent.isTight ? parent.width : implicitWidth
                text: Theme.joined([place.range, place.age], "  ·  ")
                wrapMode: Text.Wrap
                horizontalAlignment: Text.AlignLeft
                color: Theme.muted
                font.pixelSize: Theme.tiny
            }
            Row {
                id: buttons
                anchors.right: parent.right
                anchors.bottom: parent.bottom
                spacing: 6
                PlainButton {
                    sign: "up"
                    explanation: App.words.moveUp + ": " + place.name
                    enabled: place.index > 0
                    onClicked: place.move(-1)
                }
                PlainButton {
                    sign: "down"
                    explanation: App.words.moveDown + ": " + place.name
                    enabled: place.index < App.places.count - 1
                    onClicked: place.move(1)
                }
                PlainButton {
                    sign: "cross"
                    explanation: App.words.remove + ": " + place.name
                    onClicked: App.removePlace(place.placeId)
                }
            }
        }
        Flow {
            width: parent.width
            spacing: Theme.space
            PlainText {
                height: choice.height
                text: App.words.notifications
                verticalAlignment: Text.AlignVCenter
                color: Theme.muted
                font.pixelSize: Theme.small
            }
            Choice {
                id: choice
                model: [
                    {
                        "value": "everything",
                        "text": App.words.notifyEverything
                    },
                    {
                        "value": "severe",
                        "text": App.words.notifySevere
                    },
                    {
                        "value": "official",
                        "text": App.words.notifyOfficial
                    },
                    {
                        "value": "nothing",
                        "text": App.words.notifyNothing
                    }
                ]
                value: place.notifications
                title: App.words.notifications + ", " + place.name
                onChosen: value => App.chooseNotifications(place.placeId, value)
            }
        }
    }
}
