// Geomagnetic activity: the present on its scale, and the days before and after it.
import QtQuick
import NimbaraItems
import NimbaraPages

Card {
    id: card

    readonly property bool isWide: width >= 620

    title: App.hazards.words.kp

    component Words: PlainText {
        width: parent.width
        visible: text !== ""
        wrapMode: Text.Wrap
        color: Theme.text
        font.pixelSize: Theme.small
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }

    Column {
        width: parent.width
        spacing: 1.5 * Theme.space

        Words {
            text: App.hazards.kp.notice
            Accessible.role: Accessible.AlertMessage
        }
        Flow {
            width: parent.width
            spacing: 2 * Theme.space

            Column {
                id: present
                width: card.isWide ? 230 * Theme.scale : parent.width
                spacing: 4
                Accessible.role: Accessible.StaticText
                Accessible.name: App.hazards.kp.sentence || App.hazards.kp.word || card.title

                KpGauge {
                    visible: App.hazards.kp.isKnown
                    anchors.horizontalCenter: parent.horizontalCenter
                    width: 170 * Theme.scale
                    height: 132 * Theme.scale
                    isKnown: App.hazards.kp.isKnown
                    share: App.hazards.kp.share
                    levels: Theme.kpColours
                    text: Theme.text
                    PlainText {
                        anchors.horizontalCenter: parent.horizontalCenter
                        y: parent.height * 0.36
                        text: App.hazards.kp.value
                        color: Theme.text
                        font.pixelSize: 1.3 * Theme.headline
                        font.weight: Font.Light
                    }
                    PlainText {
                        anchors.horizontalCenter: parent.horizontalCenter
                        y: parent.height * 0.72
                        text: "Kp"
                        color: Theme.muted
                        font.pixelSize: Theme.tiny
                    }
                }
                PlainText {
                    width: parent.width
                    horizontalAlignment: Text.AlignHCenter
                    visible: text !== ""
                    text: App.hazards.kp.word
                    wrapMode: Text.Wrap
                    color: Theme.text
                    font.pixelSize: Theme.body
                    font.weight: Font.DemiBold
                }
                Words {
                    horizontalAlignment: Text.AlignHCenter
                    text: App.hazards.kp.meaning
                    color: Theme.muted
                }
            }
            Column {
                visible: !bars.isEmpty
                width: card.isWide ? parent.width - present.width - 2 * Theme.space : parent.width
                spacing: Theme.space

                Rectangle {
                    id: chart
                    width: parent.width
                    height: 170 * Theme.scale
                    color: "transparent"
                    radius: 8
                    border.width: activeFocus ? 2 : 0
                    border.color: Theme.accent
                    activeFocusOnTab: true
                    onActiveFocusChanged: if (activeFocus && bars.cursor < 0) bars.cursor = 0
                    Keys.onLeftPressed: bars.cursor = Math.max(0, bars.cursor - 1)
                    Keys.onRightPressed: bars.cursor += 1
                    Keys.onEscapePressed: bars.cursor = -1
                    Accessible.role: Accessible.Chart
                    Accessible.name: App.hazards.words.bars
                    Accessible.description: bars.reading || App.hazards.kp.hint
                    Accessible.focusable: true
                    Accessible.onIncreaseAction: bars.cursor += 1
                    Accessible.onDecreaseAction: bars.cursor = Math.max(0, bars.cursor - 1)

                    KpBarsItem {
                        id: bars
                        anchors.fill: parent
                        anchors.margins: 2
                        model: App.hazards
                        enlargement: Theme.scale
                        levels: Theme.kpColours
                        text: Theme.muted
                        grid: Theme.outline
                        mark: Theme.accent
                    }
                    HoverHandler {
                        onPointChanged: if (hovered) bars.cursor = bars.barAt(point.position.x)
                        onHoveredChanged: if (!hovered && !chart.activeFocus) bars.cursor = -1
                    }
                    TapHandler {
                        onTapped: point => {
                            chart.forceActiveFocus();
                            bars.cursor = bars.barAt(point.position.x);
                        }
                    }
                }
                Words {
                    height: Math.max(implicitHeight, 2.6 * Theme.small)
                    text: bars.reading || App.hazards.kp.hint
                    color: bars.reading === "" ? Theme.muted : Theme.text
                    Accessible.ignored: true
                }
            }
        }
        Words {
            text: App.hazards.kp.source
            color: Theme.muted
            font.pixelSize: Theme.tiny
        }
    }
}
