// Hours and days ahead: the strip, the curves, the list of days.
import QtQuick
import NimbaraItems
import NimbaraPages

ScrollPage {
    id: page

    PlaceHeading {
        width: page.inner
        size: width < 300 * Theme.scale ? Theme.title : Theme.headline
    }
    PlainText {
        width: page.inner
        visible: App.isReady && App.hours.count === 0
        text: App.now.notice || (App.now.isLoading ? App.words.loading : App.words.noWeather)
        horizontalAlignment: Text.AlignLeft
        wrapMode: Text.Wrap
        color: Theme.muted
        font.pixelSize: Theme.body
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }

    HourStrip {
        visible: App.hours.count > 0
        width: page.inner
    }

    Card {
        visible: !curves.isEmpty
        width: page.inner
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
                        { name: App.words.clouds, colour: Theme.cloud }
                    ]
                    Row {
                        required property var modelData
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
            Item {
                id: chart
                width: parent.width
                height: 400 * Math.min(1.5, Theme.scale)
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
                    enlargement: Math.min(1.5, Theme.scale)
                    text: Theme.muted
                    grid: Theme.outline
                    night: Theme.night
                    warm: Theme.warm
                    felt: Theme.felt
                    rain: Theme.rain
                    wind: Theme.wind
                    air: Theme.air
                    cloud: Theme.cloud
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
                    anchors.fill: parent
                    visible: chart.activeFocus
                    color: "transparent"
                    radius: 8
                    border.width: 2
                    border.color: Theme.accent
                }
                HoverHandler {
                    onPointChanged: if (hovered) curves.cursor = curves.pointAt(point.position.x)
                    onHoveredChanged: if (!hovered && !chart.activeFocus) curves.cursor = -1
                }
                TapHandler {
                    onTapped: {
                        chart.forceActiveFocus();
                        curves.cursor = curves.pointAt(point.position.x);
                    }
                }
            }
            MarkedText {
                width: parent.width
                height: Math.max(implicitHeight, 2.6 * Theme.small)
                lead: curves.cursor < 0 ? "" : curves.when
                rest: curves.cursor < 0 ? App.words.meteogramHint : curves.readings
                horizontalAlignment: Text.AlignLeft
                wrapMode: Text.Wrap
                color: curves.cursor < 0 ? Theme.muted : Theme.text
                font.pixelSize: Theme.small
                Accessible.ignored: true
            }
        }
    }

    Card {
        visible: App.days.count > 0
        width: page.inner
        title: App.words.sevenDays

        Column {
            width: parent.width
            Repeater {
                model: App.days
                DayRow { width: parent.width }
            }
        }
    }
}
