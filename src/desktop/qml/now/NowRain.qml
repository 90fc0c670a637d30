// When it rains or snows within the next two hours, where a radar or a model of quarter hours knows it.
import QtQuick
import NimbaraItems
import NimbaraPages

Card {
    id: card

    title: App.words.nowcast

    Column {
        width: parent.width
        spacing: Theme.space

        PlainText {
            width: parent.width
            text: App.nowcast.sentence
            wrapMode: Text.Wrap
            horizontalAlignment: Text.AlignLeft
            color: Theme.text
            font.pixelSize: Theme.body
            font.weight: Font.DemiBold
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        Item {
            id: chart

            property int cursor: -1
            readonly property Item chosen: cursor >= 0 && cursor < bars.count ? bars.itemAt(cursor) : null
            /// Of the chosen bar, which writes it here.
            property string reading: ""
            onChosenChanged: if (chosen === null) reading = ""

            function step(by) {
                cursor = Math.max(0, Math.min(bars.count - 1, cursor + by));
            }

            width: parent.width
            // Nothing but dry steps needs no room.
            height: (App.nowcastKinds.count > 0 ? 64 : 14) * Math.min(2, Theme.scale)
            activeFocusOnTab: true
            onActiveFocusChanged: if (activeFocus && cursor < 0) cursor = 0
            Keys.onLeftPressed: step(-1)
            Keys.onRightPressed: step(1)
            Keys.onEscapePressed: cursor = -1
            Accessible.role: Accessible.Chart
            Accessible.name: card.title
            Accessible.description: reading || App.nowcast.sentence + ". " + App.words.nowcastHint
            Accessible.focusable: true
            Accessible.onIncreaseAction: step(1)
            Accessible.onDecreaseAction: step(-1)

            Repeater {
                id: bars
                model: App.nowcastBars
                Item {
                    id: slot
                    required property double from
                    required property double to
                    required property string kind
                    required property double share
                    required property string reading
                    readonly property string said: chart.chosen === slot ? reading : ""
                    onSaidChanged: if (said !== "") chart.reading = said
                    x: Math.round(from * chart.width)
                    width: Math.max(2, Math.round(to * chart.width) - x)
                    height: chart.height
                    Rectangle {
                        anchors.fill: parent
                        visible: chart.chosen === slot
                        color: Theme.raised
                    }
                    RainBar {
                        readonly property bool isHatched: slot.kind === "notKnown"
                        x: 1
                        width: Math.max(1, parent.width - 2)
                        height: isHatched ? Math.round(0.35 * parent.height) : Math.round(slot.share * (parent.height - 6))
                        y: parent.height - height - 1
                        kind: slot.kind
                    }
                }
            }
            Rectangle {
                anchors.bottom: parent.bottom
                width: parent.width
                height: 1
                color: Theme.muted
            }
            Rectangle {
                x: Math.round(App.nowcast.now * parent.width)
                width: 1.5
                height: parent.height
                visible: App.nowcast.now > 0
                color: Theme.accent
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
                onPointChanged: {
                    if (!hovered)
                        return;
                    const share = point.position.x / chart.width;
                    for (let i = 0; i < bars.count; ++i) {
                        const slot = bars.itemAt(i);
                        if (slot !== null && share >= slot.from && share < slot.to)
                            chart.cursor = i;
                    }
                }
                onHoveredChanged: if (!hovered && !chart.activeFocus) chart.cursor = -1
            }
        }
        Item {
            width: parent.width
            height: first.height
            PlainText {
                id: first
                text: App.nowcast.first
                color: Theme.muted
                font.pixelSize: Theme.tiny
            }
            PlainText {
                anchors.horizontalCenter: parent.horizontalCenter
                text: App.nowcast.middle
                color: Theme.muted
                font.pixelSize: Theme.tiny
            }
            PlainText {
                anchors.right: parent.right
                text: App.nowcast.last
                color: Theme.muted
                font.pixelSize: Theme.tiny
            }
        }
        Flow {
            width: parent.width
            spacing: 2 * Theme.space
            visible: App.nowcastKinds.count > 0
            Repeater {
                model: App.nowcastKinds
                Row {
                    id: entry
                    required property string kind
                    required property string name
                    spacing: 6
                    RainBar {
                        anchors.verticalCenter: parent.verticalCenter
                        width: 12
                        height: 13
                        kind: entry.kind
                    }
                    PlainText {
                        text: entry.name
                        color: Theme.muted
                        font.pixelSize: Theme.tiny
                    }
                }
            }
        }
        PlainText {
            width: parent.width
            text: chart.reading || App.nowcast.source
            wrapMode: Text.Wrap
            horizontalAlignment: Text.AlignLeft
            color: chart.reading === "" ? Theme.muted : Theme.text
            font.pixelSize: Theme.tiny
            Accessible.role: Accessible.StaticText
            Accessible.name: App.nowcast.source
        }
    }
}
