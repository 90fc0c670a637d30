// The index and the ultraviolet light of the next 48 hours, a bar each. What is said of an hour stands below.
import QtQuick
import NimbaraItems
import NimbaraPages

Card {
    id: card

    title: App.air.words.hours

    Column {
        width: parent.width
        spacing: Theme.space

        Flow {
            width: parent.width
            spacing: 2 * Theme.space
            Repeater {
                model: [
                    { name: App.air.words.now, colour: Theme.airColours[App.air.now.colour] },
                    { name: App.air.words.uv, colour: Theme.cloud },
                    { name: App.air.words.protect, colour: Theme.ultraviolet }
                ]
                Row {
                    id: entry
                    required property var modelData
                    spacing: 6
                    Rectangle {
                        anchors.verticalCenter: parent.verticalCenter
                        width: 12
                        height: 8
                        radius: 2
                        color: entry.modelData.colour
                    }
                    PlainText {
                        text: entry.modelData.name
                        color: Theme.muted
                        font.pixelSize: Theme.tiny
                    }
                }
            }
        }
        Item {
            id: chart

            property int cursor: -1
            readonly property Item chosen: cursor >= 0 && cursor < bars.count ? bars.itemAt(cursor) : null
            /// Of the chosen hour, which writes it here.
            property string reading: ""
            onChosenChanged: if (chosen === null) reading = ""
            readonly property real slot: width / Math.max(1, bars.count)
            readonly property real foot: 20 * Theme.scale
            readonly property real lower: 56 * Math.min(2, Theme.scale)
            readonly property real upper: 150 * Math.min(2, Theme.scale)
            readonly property real gap: 1.5 * Theme.space

            function step(by) {
                cursor = Math.max(0, Math.min(bars.count - 1, cursor + by));
            }

            width: parent.width
            height: upper + gap + lower + foot
            activeFocusOnTab: true
            onActiveFocusChanged: if (activeFocus && cursor < 0) cursor = 0
            Keys.onLeftPressed: step(-1)
            Keys.onRightPressed: step(1)
            Keys.onEscapePressed: cursor = -1
            Keys.onPressed: event => {
                if (event.key !== Qt.Key_Home && event.key !== Qt.Key_End)
                    return;
                step(event.key === Qt.Key_Home ? -bars.count : bars.count);
                event.accepted = true;
            }
            Accessible.role: Accessible.Chart
            Accessible.name: card.title
            Accessible.description: reading || App.words.meteogramHint
            Accessible.focusable: true
            Accessible.onIncreaseAction: step(1)
            Accessible.onDecreaseAction: step(-1)

            Rectangle {
                visible: chart.chosen !== null
                x: chart.chosen?.x ?? 0
                width: chart.chosen?.width ?? 0
                height: chart.height - chart.foot
                color: Theme.raised
            }
            // Where the bands of the index end.
            Repeater {
                model: App.air.steps
                Rectangle {
                    required property double to
                    y: Math.round((1 - to) * chart.upper)
                    width: chart.width
                    height: 1
                    color: Theme.outline
                }
            }
            Repeater {
                model: [chart.upper, chart.upper + chart.gap + chart.lower]
                Rectangle {
                    required property real modelData
                    y: modelData
                    width: chart.width
                    height: 1
                    color: Theme.muted
                }
            }
            Repeater {
                id: bars
                model: App.air.hours
                Item {
                    id: hour
                    required property int index
                    required property string label
                    required property string reading
                    required property bool isKnown
                    required property double share
                    required property double colour
                    required property double uvShare
                    required property bool wantsProtection
                    required property bool startsDay
                    readonly property string said: chart.chosen === hour ? reading : ""
                    onSaidChanged: if (said !== "") chart.reading = said
                    x: Math.round(index * chart.slot)
                    width: Math.max(1, Math.round((index + 1) * chart.slot) - x)
                    height: chart.height
                    Rectangle {
                        visible: hour.isKnown
                        x: parent.width > 4 ? 1 : 0
                        width: Math.max(1, parent.width - (parent.width > 4 ? 2 : 0))
                        height: Math.max(2, Math.round(hour.share * chart.upper))
                        y: chart.upper - height
                        radius: Math.min(3, width / 2)
                        color: Theme.airColours[hour.colour]
                    }
                    Rectangle {
                        visible: hour.uvShare > 0
                        x: parent.width > 4 ? 1 : 0
                        width: Math.max(1, parent.width - (parent.width > 4 ? 2 : 0))
                        height: Math.max(1, Math.round(hour.uvShare * chart.lower))
                        y: chart.upper + chart.gap + chart.lower - height
                        radius: Math.min(3, width / 2)
                        color: hour.wantsProtection ? Theme.ultraviolet : Theme.cloud
                    }
                    // Few hours have what follows.
                    Loader {
                        active: !hour.isKnown
                        width: parent.width
                        height: 10 * Theme.scale
                        y: chart.upper - height
                        sourceComponent: RainBar { kind: "notKnown" }
                    }
                    Loader {
                        active: hour.startsDay
                        height: parent.height - chart.foot
                        sourceComponent: Rectangle {
                            width: 1
                            color: Theme.muted
                            opacity: 0.5
                        }
                    }
                    Loader {
                        active: hour.label !== ""
                        y: parent.height - chart.foot + 3
                        sourceComponent: PlainText {
                            visible: hour.x + implicitWidth <= chart.width
                            text: hour.label
                            color: hour.startsDay ? Theme.text : Theme.muted
                            font.pixelSize: Theme.tiny
                            font.weight: hour.startsDay ? Font.DemiBold : Font.Normal
                        }
                    }
                }
            }
            Rectangle {
                anchors.fill: parent
                anchors.margins: -3
                visible: chart.activeFocus
                color: "transparent"
                radius: 8
                border.width: 2
                border.color: Theme.accent
            }
            HoverHandler {
                onPointChanged: if (hovered) chart.cursor = Math.floor(point.position.x / chart.slot)
                onHoveredChanged: if (!hovered && !chart.activeFocus) chart.cursor = -1
            }
            TapHandler {
                onTapped: point => {
                    chart.forceActiveFocus();
                    chart.cursor = Math.floor(point.position.x / chart.slot);
                }
            }
        }
        PlainText {
            width: parent.width
            text: chart.reading || App.words.meteogramHint
            wrapMode: Text.Wrap
            horizontalAlignment: Text.AlignLeft
            color: chart.reading === "" ? Theme.muted : Theme.text
            font.pixelSize: Theme.small
            Accessible.ignored: true
        }
    }
}
