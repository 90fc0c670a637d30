// The index of the air on its scale, with the band in words beside the colour.
import QtQuick
import NimbaraItems
import NimbaraPages

Card {
    id: card

    readonly property var air: App.air.now

    title: App.air.words.now

    Column {
        width: parent.width
        spacing: Theme.space

        Rectangle {
            width: parent.width
            visible: notice.text !== ""
            height: notice.height + 2 * Theme.space
            radius: 12
            color: Theme.alertColour("warning")
            AirWords {
                id: notice
                x: 1.5 * Theme.space
                y: Theme.space
                width: parent.width - 3 * Theme.space
                text: card.air.notice
                font.pixelSize: Theme.small
                Accessible.role: Accessible.AlertMessage
            }
        }
        Row {
            id: reading
            visible: card.air.isKnown
            spacing: 1.5 * Theme.space
            Accessible.role: Accessible.StaticText
            Accessible.name: card.air.sentence
            PlainText {
                id: number
                text: card.air.index
                color: Theme.text
                font.pixelSize: 3 * Theme.body
                font.weight: Font.Light
            }
            Column {
                anchors.verticalCenter: parent.verticalCenter
                width: card.width - 2 * card.padding - number.width - reading.spacing
                PlainText {
                    width: parent.width
                    text: card.air.band
                    wrapMode: Text.Wrap
                    horizontalAlignment: Text.AlignLeft
                    color: Theme.text
                    font.pixelSize: Theme.title
                    font.weight: Font.DemiBold
                }
                PlainText {
                    width: parent.width
                    text: card.air.scale
                    wrapMode: Text.Wrap
                    horizontalAlignment: Text.AlignLeft
                    color: Theme.muted
                    font.pixelSize: Theme.small
                }
            }
        }
        AirWords {
            text: card.air.isKnown ? "" : card.air.sentence
            font.weight: Font.DemiBold
        }
        Item {
            id: ruler
            width: parent.width
            height: 22 * Theme.scale
            visible: card.air.isKnown
            Repeater {
                model: App.air.steps
                Rectangle {
                    required property double from
                    required property double to
                    required property double colour
                    x: from * ruler.width + 1
                    y: 8 * Theme.scale
                    width: (to - from) * ruler.width - 2
                    height: 8 * Theme.scale
                    radius: height / 2
                    color: Theme.airColours[colour]
                }
            }
            Rectangle {
                x: Math.max(0, Math.min(ruler.width - width, card.air.share * ruler.width - width / 2))
                y: 2 * Theme.scale
                width: 6 * Theme.scale
                height: 20 * Theme.scale
                radius: width / 2
                color: Theme.text
                border.width: 1.5
                border.color: Theme.card
            }
        }
        Flow {
            width: parent.width
            visible: card.air.isKnown
            spacing: 1.5 * Theme.space
            Repeater {
                model: App.air.steps
                Row {
                    id: step
                    required property string name
                    required property double colour
                    spacing: 6
                    Rectangle {
                        anchors.verticalCenter: parent.verticalCenter
                        width: 10 * Theme.scale
                        height: width
                        radius: width / 2
                        color: Theme.airColours[step.colour]
                    }
                    PlainText {
                        text: step.name
                        color: step.name === card.air.band ? Theme.text : Theme.muted
                        font.pixelSize: Theme.tiny
                        font.weight: step.name === card.air.band ? Font.DemiBold : Font.Normal
                    }
                }
            }
        }
        AirWords { text: card.air.leading }
        AirWords { text: card.air.peak }
        AirWords {
            text: card.air.source
            color: Theme.muted
            font.pixelSize: Theme.tiny
        }
    }
}
