// Earthquakes: filters, the map, the list. What is pointed at in one of them stands out in the other.
import QtQuick
import QtQuick.Controls.Basic
import NimbaraItems
import NimbaraPages

Card {
    id: card

    readonly property bool isWide: width >= 820

    title: App.hazards.words.quakes

    Column {
        width: parent.width
        spacing: 1.5 * Theme.space

        PlainText {
            width: parent.width
            visible: text !== ""
            text: App.hazards.about.headline || App.hazards.about.count
            wrapMode: Text.Wrap
            color: Theme.text
            font.pixelSize: Theme.title
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        PlainText {
            width: parent.width
            visible: App.hazards.about.headline !== ""
            text: App.hazards.about.count
            wrapMode: Text.Wrap
            color: Theme.muted
            font.pixelSize: Theme.small
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        PlainText {
            width: parent.width
            visible: text !== ""
            text: App.hazards.about.notice
            wrapMode: Text.Wrap
            color: Theme.text
            font.pixelSize: Theme.small
            Accessible.role: Accessible.AlertMessage
            Accessible.name: text
        }
        Flow {
            width: parent.width
            spacing: Theme.space
            ChoiceRow {
                width: card.isWide ? (parent.width - Theme.space) * 0.55 : parent.width
                visible: App.hazards.about.hasPlace
                title: App.hazards.words.radius
                values: App.hazards.radii
                onChosen: value => App.hazards.setRadius(value)
            }
            ChoiceRow {
                width: card.isWide ? (parent.width - Theme.space) * 0.45 : parent.width
                title: App.hazards.words.strength
                values: App.hazards.magnitudes
                onChosen: value => App.hazards.setMagnitude(value)
            }
            ChoiceRow {
                width: parent.width
                title: App.hazards.words.order
                values: App.hazards.orders
                onChosen: value => App.hazards.setOrder(value)
            }
        }
        Item {
            width: parent.width
            height: card.isWide ? map.height : map.height + Theme.space + list.height

            Column {
                id: map
                width: card.isWide ? Math.round((parent.width - 2 * Theme.space) * 0.64) : parent.width
                spacing: Theme.space

                Rectangle {
                    id: frame
                    width: parent.width
                    height: Math.round(width / 2)
                    radius: 10
                    color: Theme.sea
                    border.width: activeFocus ? 2 : 0
                    border.color: Theme.accent
                    activeFocusOnTab: true
                    Keys.onRightPressed: App.hazards.highlighted += 1
                    Keys.onLeftPressed: App.hazards.highlighted = Math.max(0, App.hazards.highlighted - 1)
                    Keys.onEscapePressed: App.hazards.highlighted = -1
                    Accessible.role: Accessible.Chart
                    Accessible.name: App.hazards.words.map
                    Accessible.description: App.hazards.highlightedText || App.hazards.words.mapHint
                    Accessible.focusable: true
                    Accessible.onIncreaseAction: App.hazards.highlighted += 1
                    Accessible.onDecreaseAction: App.hazards.highlighted = Math.max(0, App.hazards.highlighted - 1)

                    QuakeMapItem {
                        id: world
                        anchors.fill: parent
                        anchors.margins: 2
                        model: App.hazards
                        sea: Theme.sea
                        land: Theme.land
                        border: Theme.border
                        mark: Theme.accent
                        ring: Theme.text
                        ages: Theme.ageColours
                        HoverHandler {
                            onPointChanged: if (hovered) App.hazards.highlighted = world.rowAt(point.position.x, point.position.y)
                            onHoveredChanged: if (!hovered && !frame.activeFocus) App.hazards.highlighted = -1
                        }
                        TapHandler {
                            onTapped: point => {
                                frame.forceActiveFocus();
                                App.hazards.highlighted = world.rowAt(point.position.x, point.position.y);
                            }
                        }
                    }
                }
                Flow {
                    width: parent.width
                    spacing: 2 * Theme.space
                    Repeater {
                        model: [App.hazards.words.lastHour, App.hazards.words.lastSix, App.hazards.words.lastDay]
                        Row {
                            required property int index
                            required property string modelData
                            spacing: 6
                            Rectangle {
                                anchors.verticalCenter: parent.verticalCenter
                                width: 10
                                height: 10
                                radius: 5
                                color: Theme.ageColours[index]
                            }
                            PlainText {
                                text: modelData
                                color: Theme.muted
                                font.pixelSize: Theme.tiny
                            }
                        }
                    }
                }
                PlainText {
                    width: parent.width
                    height: Math.max(implicitHeight, 2.6 * Theme.small)
                    text: App.hazards.highlightedText || App.hazards.words.mapHint
                    wrapMode: Text.Wrap
                    color: App.hazards.highlighted < 0 ? Theme.muted : Theme.text
                    font.pixelSize: Theme.small
                    Accessible.ignored: true
                }
            }
            QuakeList {
                id: list
                x: card.isWide ? parent.width - width : 0
                y: card.isWide ? 0 : map.height + Theme.space
                width: card.isWide ? parent.width - map.width - 2 * Theme.space : parent.width
                height: card.isWide ? map.height : Math.min(contentHeight, 360 * Theme.scale)
            }
        }
        PlainText {
            width: parent.width
            text: App.hazards.about.source
            wrapMode: Text.Wrap
            color: Theme.muted
            font.pixelSize: Theme.tiny
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
    }
}
