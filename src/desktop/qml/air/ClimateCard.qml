// Today beside what is usual, and the usual temperatures of the whole year.
import QtQuick
import NimbaraItems
import NimbaraPages

Card {
    id: card

    readonly property var air: App.air.now

    title: App.air.words.climate

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
                text: card.air.climateNotice
                font.pixelSize: Theme.small
                Accessible.role: Accessible.AlertMessage
            }
        }
        AirWords {
            text: card.air.climate
            font.weight: Font.DemiBold
        }
        AirWords { text: card.air.climateBand }
        AirWords { text: card.air.climateToday }
        YearItem {
            id: year
            visible: !isEmpty && card.air.climateNotice === ""
            width: parent.width
            height: 200 * Math.min(2, Theme.scale)
            model: App.air
            enlargement: Math.min(2, Theme.scale)
            text: Theme.muted
            grid: Theme.outline
            band: Theme.warm
            mark: Theme.text
            Accessible.role: Accessible.Graphic
            Accessible.name: App.air.words.year
            Accessible.description: Theme.joined([card.air.climate, card.air.climateToday], ". ")
        }
        Flow {
            width: parent.width
            visible: year.visible
            spacing: 2 * Theme.space
            Repeater {
                model: [
                    { name: App.air.words.middle, fill: Qt.alpha(Theme.warm, 0.45) },
                    { name: App.air.words.most, fill: Qt.alpha(Theme.warm, 0.2) },
                    { name: App.air.words.median, fill: Theme.warm },
                    { name: App.air.words.today, fill: Theme.text }
                ]
                Row {
                    id: entry
                    required property var modelData
                    required property int index
                    spacing: 6
                    Rectangle {
                        anchors.verticalCenter: parent.verticalCenter
                        width: entry.index === 3 ? 8 : 14
                        height: entry.index === 2 ? 3 : 8
                        radius: entry.index === 3 ? 4 : 2
                        color: entry.modelData.fill
                    }
                    PlainText {
                        text: entry.modelData.name
                        color: Theme.muted
                        font.pixelSize: Theme.tiny
                    }
                }
            }
        }
        AirWords {
            text: card.air.climateSource
            color: Theme.muted
            font.pixelSize: Theme.tiny
        }
    }
}
