// The present at the selected place.
import QtQuick
import NimbaraPages

ScrollPage {
    id: page

    readonly property bool isTight: inner < 300 * Theme.scale

    Rectangle {
        id: sky
        width: page.inner
        height: head.height + 6 * Theme.space
        radius: 1.5 * Theme.radius
        gradient: Gradient {
            GradientStop { position: 0; color: app.now.skyTop }
            GradientStop { position: 1; color: app.now.skyBottom }
        }
        Accessible.role: Accessible.StaticText
        Accessible.name: app.now.summary || app.now.place || app.words.noWeather

        Later {
            id: scenery
            readonly property real begin: head.x + Math.max(place.implicitWidth, area.implicitWidth, reading.childrenRect.width, sentence.implicitWidth) + 3 * Theme.space
            readonly property bool hasRoom: parent.width - begin > 200
            anchors.right: parent.right
            width: parent.width - begin
            height: parent.height
            visible: hasRoom && app.now.hasReading
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
            y: 3 * Theme.space
            width: parent.width - 6 * Theme.space
            spacing: Theme.space

            Item {
                width: parent.width
                height: names.height

                Column {
                    id: names
                    anchors.left: parent.left
                    width: parent.width - again.width - Theme.space
                    spacing: 2
                    PlainText {
                        id: place
                        width: parent.width
                        text: app.now.place
                        horizontalAlignment: Text.AlignLeft
                        wrapMode: Text.Wrap
                        maximumLineCount: 3
                        elide: Text.ElideRight
                        color: "white"
                        font.pixelSize: page.isTight ? Theme.title : Theme.headline
                        font.weight: Font.DemiBold
                        Accessible.role: Accessible.Heading
                        Accessible.name: text
                    }
                    PlainText {
                        id: area
                        width: parent.width
                        text: [app.now.area, app.now.localTime].filter(part => part !== "").join("  ·  ")
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
                    explanation: app.words.refresh
                    enabled: !app.now.isLoading && app.now.hasPlace
                    onClicked: app.refresh()
                }
            }

            Flow {
                id: reading
                width: parent.width
                spacing: 2 * Theme.space
                visible: app.now.hasReading

                Row {
                    spacing: 2 * Theme.space
                    PlainText {
                        text: app.now.temperature
                        color: "white"
                        font.pixelSize: Theme.display
                        font.weight: Font.Light
                    }
                    Glyph {
                        anchors.verticalCenter: parent.verticalCenter
                        size: 88 * Theme.scale
                        sky: app.now.sky
                        isDay: app.now.isDay
                        onDark: true
                    }
                }
                Column {
                    topPadding: page.inner > 460 * Theme.scale ? 2.5 * Theme.space : 0
                    spacing: 3
                    PlainText {
                        text: app.now.condition
                        color: "white"
                        font.pixelSize: Theme.title
                        font.weight: Font.DemiBold
                    }
                    PlainText {
                        text: app.now.feelsLike
                        color: "white"
                        font.pixelSize: Theme.body
                    }
                    PlainText {
                        text: app.now.range
                        color: "white"
                        font.pixelSize: Theme.body
                    }
                }
            }
            PlainText {
                width: parent.width
                visible: !app.now.hasReading
                text: !app.isReady ? "" : app.now.isLoading ? app.words.loading : app.now.hasWeather ? app.words.noReading : app.words.noWeather
                horizontalAlignment: Text.AlignLeft
                color: "white"
                font.pixelSize: Theme.title
                wrapMode: Text.Wrap
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
            PlainText {
                id: sentence
                width: parent.width
                visible: text !== ""
                text: app.now.sentence
                horizontalAlignment: Text.AlignLeft
                wrapMode: Text.Wrap
                color: "white"
                font.pixelSize: Theme.body
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
        }
    }

    Rectangle {
        visible: app.now.notice !== ""
        width: page.inner
        height: notice.height + 3 * Theme.space
        radius: Theme.radius
        color: Theme.alertColour(app.now.isFailure ? "warning" : "advisory")
        PlainText {
            id: notice
            x: 2 * Theme.space
            y: 1.5 * Theme.space
            width: parent.width - 4 * Theme.space
            text: app.now.notice
            horizontalAlignment: Text.AlignLeft
            wrapMode: Text.Wrap
            color: Theme.text
            font.pixelSize: Theme.body
            Accessible.role: Accessible.AlertMessage
            Accessible.name: text
        }
    }

    Loader {
        visible: app.alerts.count > 0
        width: page.inner
        source: visible ? "AlertPager.qml" : ""
    }
    Row {
        visible: brief.text !== ""
        width: page.inner
        spacing: Theme.space
        Sign {
            id: briefSign
            anchors.verticalCenter: parent.verticalCenter
            visible: app.hazards.official.state !== "none"
            size: 16 * Theme.scale
            name: "warning"
            ink: app.hazards.official.isUnchecked ? Theme.alertInk("warning") : Theme.muted
        }
        PlainText {
            id: brief
            width: parent.width - (briefSign.visible ? briefSign.width + Theme.space : 0)
            text: app.hazards.official.brief
            wrapMode: Text.Wrap
            color: app.hazards.official.isUnchecked ? Theme.text : Theme.muted
            font.pixelSize: Theme.small
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
    }

    Later {
        width: page.inner
        file: "NowDetails.qml"
    }
}
