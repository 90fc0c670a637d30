// The present at the selected place.
import QtQuick
import NimbaraPages
import NimbaraItems

ScrollPage {
    id: page

    readonly property bool isTight: inner < 300 * Theme.scale
    // A low window has room for the days ahead as well.
    readonly property bool isLow: height < 860 * Theme.scale

    most: 3000

    Board {
        width: page.inner
        weights: [[1], [1.55, 1], [1.2, 1, 0.9]][page.lanes - 1]
        spacing: 2 * Theme.space
        isMirrored: LayoutMirroring.enabled

        Rectangle {
            id: sky
            readonly property int lane: 0
            height: head.height + (page.isLow ? 5 : 6) * Theme.space
            radius: 1.5 * Theme.radius
            gradient: Gradient {
                GradientStop { position: 0; color: App.now.skyTop }
                GradientStop { position: 1; color: App.now.skyBottom }
            }
            Accessible.role: Accessible.StaticText
            Accessible.name: App.now.summary || App.now.place || App.words.noWeather

            Later {
                id: scenery
                readonly property real begin: head.x + Math.max(place.implicitWidth, area.implicitWidth, reading.childrenRect.width, sentence.implicitWidth) + 3 * Theme.space
                readonly property bool hasRoom: parent.width - begin > 200
                anchors.right: parent.right
                width: parent.width - begin
                height: parent.height
                visible: hasRoom && App.now.hasReading
                file: hasRoom ? "Scenery.qml" : ""
                opacity: status === Loader.Ready ? 1 : 0
                Behavior on opacity { NumberAnimation { duration: Theme.quick } }
                Binding {
                    target: scenery.item
                    when: scenery.status === Loader.Ready
                    property: "radius"
                    value: sky.radius
                }
            }

            Column {
                id: head
                x: 3 * Theme.space
                y: (page.isLow ? 2.5 : 3) * Theme.space
                width: parent.width - 6 * Theme.space
                spacing: (page.isLow ? 0.5 : 1) * Theme.space

                Item {
                    width: parent.width
                    height: names.height

                    Column {
                        id: names
                        anchors.left: parent.left
                        width: parent.width - again.width - Theme.space
                        spacing: 2
                        PlaceHeading {
                            id: place
                            width: parent.width
                            ink: "white"
                            size: page.isTight ? Theme.title : Theme.headline
                        }
                        PlainText {
                            id: area
                            width: parent.width
                            text: Theme.joined([App.now.area, App.now.localTime], "  ·  ")
                            horizontalAlignment: Text.AlignLeft
                            wrapMode: Text.Wrap
                            color: "white"
                            font.pixelSize: Theme.small
                        }
                    }
                    PlainButton {
                        id: again
                        anchors.right: parent.right
                        ink: "white"
                        sign: "again"
                        explanation: App.words.refresh
                        enabled: !App.now.isLoading && App.now.hasPlace
                        onClicked: App.refresh()
                    }
                }

                Flow {
                    id: reading
                    width: parent.width
                    spacing: 2 * Theme.space
                    visible: App.now.hasReading

                    Row {
                        spacing: 2 * Theme.space
                        PlainText {
                            text: App.now.temperature
                            color: "white"
                            font.pixelSize: page.isLow ? Math.round(0.74 * Theme.display) : Theme.display
                            font.weight: Font.Light
                        }
                        Loader {
                            anchors.verticalCenter: parent.verticalCenter
                            visible: active
                            active: App.now.mark !== ""
                            sourceComponent: StationMark {
                                text: App.now.mark
                                ink: "white"
                            }
                        }
                        Glyph {
                            anchors.verticalCenter: parent.verticalCenter
                            size: (page.isLow ? 72 : 88) * Theme.scale
                            sky: App.now.sky
                            isDay: App.now.isDay
                            overDark: true
                        }
                    }
                    Column {
                        topPadding: sky.width > 460 * Theme.scale ? (page.isLow ? 1 : 2.5) * Theme.space : 0
                        spacing: page.isLow ? 1 : 3
                        PlainText {
                            text: App.now.condition
                            color: "white"
                            font.pixelSize: Theme.title
                            font.weight: Font.DemiBold
                        }
                        PlainText {
                            text: App.now.feelsLike
                            color: "white"
                            font.pixelSize: Theme.body
                        }
                        PlainText {
                            text: App.now.range
                            color: "white"
                            font.pixelSize: Theme.body
                        }
                    }
                }
                Loader {
                    width: parent.width
                    visible: active
                    active: !App.now.hasReading && App.isReady
                    source: "NowArrival.qml"
                }
                PlainText {
                    id: sentence
                    width: parent.width
                    visible: text !== ""
                    text: App.now.sentence
                    horizontalAlignment: Text.AlignLeft
                    wrapMode: Text.Wrap
                    color: "white"
                    font.pixelSize: Theme.body
                    Accessible.role: Accessible.StaticText
                    Accessible.name: text
                }
                PlainText {
                    width: parent.width
                    visible: text !== ""
                    text: App.now.station
                    horizontalAlignment: Text.AlignLeft
                    wrapMode: Text.Wrap
                    color: "white"
                    font.pixelSize: Theme.small
                    Accessible.role: Accessible.StaticText
                    Accessible.name: text
                }
            }
        }

        Loader {
            readonly property int lane: 0
            visible: App.first.arrival.phase === "loading"
            source: visible ? "NowWaiting.qml" : ""
        }
        Loader {
            readonly property int lane: 0
            visible: App.first.background.phase !== ""
            source: visible ? "BackgroundQuestion.qml" : ""
        }

        Rectangle {
            readonly property int lane: 0
            visible: App.now.notice !== "" && App.first.arrival.phase === ""
            height: notice.height + 3 * Theme.space
            radius: Theme.radius
            color: Theme.alertColour(App.now.isFailure ? "warning" : "advisory")
            PlainText {
                id: notice
                x: 2 * Theme.space
                y: 1.5 * Theme.space
                width: parent.width - 4 * Theme.space
                text: App.now.notice
                horizontalAlignment: Text.AlignLeft
                wrapMode: Text.Wrap
                color: Theme.text
                font.pixelSize: Theme.body
                Accessible.role: Accessible.AlertMessage
                Accessible.name: text
            }
        }

        Later {
            readonly property int lane: 0
            visible: App.alerts.count > 0 || App.elsewhere.count > 0
            file: visible ? "WarningChips.qml" : ""
        }
        Later {
            readonly property int lane: 0
            visible: App.hazards.official.brief !== ""
            file: visible ? "NowOfficial.qml" : ""
        }

        Later {
            readonly property int lane: 0
            visible: App.nowcast.isShown
            // Where nothing falls there is nothing to draw.
            file: !visible ? "" : App.nowcastKinds.count > 0 ? "NowRain.qml" : "NowDry.qml"
        }
        PlainText {
            readonly property int lane: 0
            visible: text !== ""
            text: App.nowcast.failure
            wrapMode: Text.Wrap
            horizontalAlignment: Text.AlignLeft
            color: Theme.muted
            font.pixelSize: Theme.small
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        Later {
            readonly property int lane: 0
            file: "NowAhead.qml"
        }
        Later {
            readonly property int lane: 0
            visible: App.now.brief !== ""
            file: visible ? "NowBrief.qml" : ""
        }
        Later {
            readonly property int lane: 1
            visible: page.lanes === 3
            file: visible ? "NowBeside.qml" : ""
        }
        Later {
            readonly property int lane: page.lanes - 1
            file: "NowDetails.qml"
        }
    }
}
