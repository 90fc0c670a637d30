// The radar's times: a player, the time that is shown and how old it is, what the colours mean and whose picture it is.
import QtQuick
import QtQuick.Controls.Basic
import NimbaraPages
import NimbaraItems

FocusScope {
    id: bar

    readonly property var radar: App.map.radar
    readonly property var view: radar.view
    readonly property bool hasFrames: view.frameCount > 0
    readonly property bool isWide: width >= 460 * Theme.scale
    // Of what cannot be taken for the present.
    readonly property color timeInk: view.isOld ? Theme.muted : view.isForecast ? Theme.accent : Theme.text

    height: content.height + 2 * Theme.space
    Accessible.role: Accessible.Grouping
    Accessible.name: Theme.joined([radar.words.title, view.sentence], ": ")
    Accessible.description: radar.words.hint

    function take(event) {
        if (event.modifiers & (Qt.ControlModifier | Qt.AltModifier | Qt.MetaModifier))
            return false;
        switch (event.key) {
        case Qt.Key_Space: radar.togglePlay(); return true;
        case Qt.Key_Comma: radar.step(-1); return true;
        case Qt.Key_Period: radar.step(1); return true;
        }
        return false;
    }
    Keys.onPressed: event => event.accepted = take(event)

    Rectangle {
        anchors.fill: parent
        radius: Theme.radius
        color: Qt.alpha(Theme.card, 0.96)
        border.width: 1
        border.color: Theme.outline
    }
    MouseArea { anchors.fill: parent; onWheel: {} }

    Column {
        id: content
        x: 1.5 * Theme.space
        y: Theme.space
        width: parent.width - 3 * Theme.space
        spacing: 4

        Item {
            width: parent.width
            height: visible ? Math.max(buttons.height, clock.height) : 0
            visible: bar.hasFrames

            Row {
                id: buttons
                anchors.left: parent.left
                anchors.verticalCenter: parent.verticalCenter
                spacing: 4
                PlainButton {
                    objectName: "radarPlay"
                    width: implicitHeight
                    enabled: bar.view.canPlay
                    sign: bar.radar.isPlaying ? "pause" : "play"
                    explanation: bar.radar.isPlaying ? bar.radar.words.pause : bar.radar.words.play
                    onClicked: bar.radar.togglePlay()
                }
                PlainButton {
                    visible: bar.isWide
                    width: implicitHeight
                    enabled: bar.view.frame > 0
                    sign: "back"
                    explanation: bar.radar.words.earlier
                    onClicked: bar.radar.step(-1)
                }
                PlainButton {
                    visible: bar.isWide
                    width: implicitHeight
                    enabled: bar.view.frame < bar.view.frameCount - 1
                    sign: "forth"
                    explanation: bar.radar.words.later
                    onClicked: bar.radar.step(1)
                }
            }

            Slider {
                id: slider
                objectName: "radarTimes"
                anchors.left: buttons.right
                anchors.leftMargin: Theme.space
                anchors.right: clock.left
                anchors.rightMargin: 1.5 * Theme.space
                anchors.verticalCenter: parent.verticalCenter
                height: 36 * Theme.scale
                enabled: bar.view.canPlay
                from: 0
                to: Math.max(1, bar.view.frameCount - 1)
                stepSize: 1
                snapMode: Slider.SnapAlways
                Accessible.name: bar.radar.words.times
                Accessible.description: bar.view.sentence
                onMoved: bar.radar.choose(value)
                // No further than it goes yet: the row may become longer after its place in it.
                Binding on value { value: Math.min(slider.to, bar.view.frame); when: !slider.pressed }

                background: Item {
                    id: track
                    readonly property real begin: slider.leftPadding + slider.handle.width / 2
                    readonly property real way: slider.availableWidth - slider.handle.width
                    readonly property real now: (bar.view.newest + 0.5) / slider.to * way
                    function at(frame) {
                        const x = frame / slider.to * way;
                        return begin + (slider.mirrored ? way - x : x);
                    }
                    // Measured before the present, computed after it.
                    Repeater {
                        model: bar.radar.steps
                        Rectangle {
                            required property int index
                            required property bool isForecast
                            required property bool isLoaded
                            readonly property real side: isForecast ? 5 : 7
                            x: track.at(index) - width / 2
                            y: (track.height - height) / 2
                            width: side
                            height: side
                            radius: side / 2
                            color: isLoaded ? (isForecast ? Theme.accent : Theme.text) : Theme.raised
                            border.width: 1
                            border.color: isForecast ? Theme.accent : Theme.muted
                        }
                    }
                    Rectangle {
                        visible: bar.view.newest < bar.view.frameCount - 1
                        x: track.at(bar.view.newest + 0.5) - width / 2
                        y: 4
                        width: 1.5
                        height: track.height - 8
                        color: Theme.muted
                    }
                }
                handle: Rectangle {
                    x: slider.leftPadding + slider.visualPosition * (slider.availableWidth - width)
                    y: slider.topPadding + (slider.availableHeight - height) / 2
                    width: 16 * Theme.scale
                    height: width
                    radius: width / 2
                    color: Theme.accent
                    border.width: slider.visualFocus ? 3 : 2
                    border.color: slider.visualFocus ? Theme.text : Theme.card
                }
            }

            Column {
                id: clock
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                width: Math.max(96 * Theme.scale, time.implicitWidth, age.implicitWidth)
                PlainText {
                    id: time
                    width: parent.width
                    text: bar.view.time
                    horizontalAlignment: Text.AlignRight
                    color: bar.timeInk
                    font.pixelSize: Theme.title
                    font.weight: Font.DemiBold
                    Accessible.role: Accessible.StaticText
                    Accessible.name: text
                }
                PlainText {
                    id: age
                    width: parent.width
                    text: bar.view.age
                    horizontalAlignment: Text.AlignRight
                    color: bar.view.isForecast ? Theme.accent : Theme.muted
                    font.pixelSize: Theme.tiny
                    Accessible.role: Accessible.StaticText
                    Accessible.name: text
                }
            }
        }

        Row {
            width: parent.width
            spacing: 6
            visible: bar.view.note !== ""
            Sign {
                id: sign
                anchors.verticalCenter: note.verticalCenter
                visible: bar.view.state === "failed" || bar.view.isOld
                size: 15 * Theme.scale
                name: "warning"
                ink: Theme.alertInk("warning")
            }
            PlainText {
                id: note
                objectName: "radarNote"
                width: parent.width - (sign.visible ? sign.width + parent.spacing : 0)
                text: bar.view.note
                horizontalAlignment: Text.AlignLeft
                wrapMode: Text.Wrap
                color: Theme.text
                font.pixelSize: Theme.small
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
        }

        RadarLegend {
            width: parent.width
            visible: bar.hasFrames
        }
    }
}
