// The curves of the days ahead. What they say of an hour stands beside the pointer.
import QtQuick
import NimbaraItems
import NimbaraPages

Card {
    id: card

    property real tall: 400

    visible: !curves.isEmpty
    title: App.words.meteogram

    Column {
        width: parent.width
        spacing: Theme.space

        Flow {
            width: parent.width
            spacing: 2 * Theme.space
            Repeater {
                model: [
                    { name: App.words.temperature, colour: Theme.warm },
                    { name: App.words.feelsLike, colour: Theme.felt },
                    { name: App.words.precipitation, colour: Theme.rain },
                    { name: App.words.wind, colour: Theme.wind },
                    { name: App.words.pressure, colour: Theme.air },
                    { name: App.words.clouds, colour: Theme.cloud },
                    { name: App.words.observed, colour: Theme.text, isAbsent: !curves.hasObserved }
                ]
                Row {
                    required property var modelData
                    visible: modelData.isAbsent !== true
                    spacing: 6
                    Rectangle {
                        anchors.verticalCenter: parent.verticalCenter
                        width: 14
                        height: 4
                        radius: 2
                        color: modelData.colour
                    }
                    PlainText {
                        text: modelData.name
                        color: Theme.muted
                        font.pixelSize: Theme.tiny
                    }
                }
            }
        }
        // The band of what is usual can be put away.
        Pressable {
            id: usual
            visible: curves.hasUsual
            implicitHeight: 28 * Theme.scale
            spokenRole: Accessible.CheckBox
            isCheckable: true
            isChecked: curves.showsUsual
            text: App.words.usual
            Accessible.description: App.words.usualHint
            onClicked: curves.showsUsual = !curves.showsUsual
            contentItem: Row {
                spacing: 6
                Rectangle {
                    anchors.verticalCenter: parent.verticalCenter
                    width: 14
                    height: 10
                    radius: 2
                    color: curves.showsUsual ? Qt.alpha(Theme.warm, 0.35) : "transparent"
                    border.width: 1
                    border.color: Theme.warm
                }
                PlainText {
                    anchors.verticalCenter: parent.verticalCenter
                    text: usual.text
                    color: Theme.muted
                    font.pixelSize: Theme.tiny
                    font.strikeout: !curves.showsUsual
                }
            }
            background: Rectangle {
                radius: 8
                color: usual.hovered ? Qt.alpha(Theme.raised, 0.6) : "transparent"
                border.width: usual.visualFocus ? 2 : 0
                border.color: Theme.accent
            }
        }
        Item {
            id: chart
            width: parent.width
            height: card.tall * Math.min(2, Theme.scale)
            activeFocusOnTab: true
            onActiveFocusChanged: if (activeFocus && curves.cursor < 0) curves.cursor = 0
            Keys.onLeftPressed: curves.cursor = Math.max(0, curves.cursor - 1)
            Keys.onRightPressed: curves.cursor += 1
            Keys.onPressed: event => {
                if (event.key === Qt.Key_Home)
                    curves.cursor = 0;
                else if (event.key === Qt.Key_End)
                    curves.cursor = 100000;
                else if (event.key === Qt.Key_Escape)
                    curves.cursor = -1;
                else
                    return;
                event.accepted = true;
            }
            Accessible.role: Accessible.Chart
            Accessible.name: App.words.meteogram
            Accessible.description: curves.cursor < 0 ? App.words.meteogramHint : curves.when + ": " + curves.readings
            Accessible.focusable: true

            MeteogramItem {
                id: curves
                anchors.fill: parent
                model: App
                enlargement: Math.min(2, Theme.scale)
                text: Theme.muted
                grid: Theme.outline
                night: Theme.night
                warm: Theme.warm
                felt: Theme.felt
                rain: Theme.rain
                wind: Theme.wind
                air: Theme.air
                cloud: Theme.cloud
                observed: Theme.text
            }
            Rectangle {
                visible: curves.cursorX >= 0
                x: curves.cursorX
                y: 20 * curves.enlargement
                width: 1.5
                height: parent.height - 22
                color: Theme.text
                opacity: 0.7
            }
            Rectangle {
                id: reading
                readonly property real gap: 14
                readonly property bool isLeft: curves.cursorX + gap + width > chart.width
                visible: curves.cursorX >= 0
                width: Math.min(readings.implicitWidth + 3 * Theme.space, chart.width)
                height: readings.height + 2 * Theme.space
                x: Math.max(0, Math.min(chart.width - width, isLeft ? curves.cursorX - gap - width : curves.cursorX + gap))
                y: Math.max(0, Math.min(chart.height - height, (pointer.hovered ? pointer.point.position.y : 30) - height / 2))
                radius: 10
                color: Theme.card
                border.width: 1
                border.color: Theme.outline
                Column {
                    id: readings
                    x: 1.5 * Theme.space
                    y: Theme.space
                    spacing: 1
                    PlainText {
                        text: curves.when
                        color: Theme.text
                        font.pixelSize: Theme.small
                        font.weight: Font.DemiBold
                    }
                    PlainText {
                        // One value a line.
                        text: curves.readings.split(", ").join("\n")
                        color: Theme.text
                        font.pixelSize: Theme.small
                    }
                }
            }
            Rectangle {
                anchors.fill: parent
                visible: chart.activeFocus
                color: "transparent"
                radius: 8
                border.width: 2
                border.color: Theme.accent
            }
            HoverHandler {
                id: pointer
                onPointChanged: if (hovered) curves.cursor = curves.pointAt(point.position.x)
                onHoveredChanged: if (!hovered && !chart.activeFocus) curves.cursor = -1
            }
            TapHandler {
                onTapped: point => {
                    chart.forceActiveFocus();
                    curves.cursor = curves.pointAt(point.position.x);
                }
            }
        }
    }
}
