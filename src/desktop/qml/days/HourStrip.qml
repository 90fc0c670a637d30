// The next 24 hours, or the hours of one day, side by side.
import QtQuick
import QtQuick.Templates as T
import NimbaraPages
import NimbaraItems

Card {
    id: strip

    property alias hours: list.model

    title: App.words.next24

    ListView {
        id: list
        width: parent.width
        height: 150 * Theme.scale
        orientation: ListView.Horizontal
        model: App.hours
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        activeFocusOnTab: true
        keyNavigationEnabled: true
        highlightMoveDuration: Theme.quick
        highlight: Rectangle {
            radius: 10
            color: "transparent"
            border.width: list.activeFocus ? 2 : 0
            border.color: Theme.accent
        }
        T.ScrollBar.horizontal: ThinBar {}
        readonly property int spokenRole: Accessible.List
        Accessible.name: strip.title

        delegate: Item {
            id: entry

            required property string hour
            required property bool startsDay
            required property string sky
            required property bool isDay
            required property string temperature
            required property double warmth
            required property string chance
            required property double wetness
            required property string wind
            required property double direction
            required property string sentence

            width: Math.max(46 * Theme.scale, list.width / Math.max(1, list.count))
            height: list.height - 8
            Accessible.role: Accessible.ListItem
            Accessible.name: sentence

            PlainText {
                anchors.horizontalCenter: parent.horizontalCenter
                text: entry.hour
                color: entry.startsDay ? Theme.text : Theme.muted
                font.pixelSize: Theme.small
                font.weight: entry.startsDay ? Font.DemiBold : Font.Normal
            }
            Glyph {
                anchors.horizontalCenter: parent.horizontalCenter
                y: 20 * Theme.scale
                size: 30 * Theme.scale
                sky: entry.sky
                isDay: entry.isDay
                overDark: Theme.dark
            }
            PlainText {
                anchors.horizontalCenter: parent.horizontalCenter
                y: (51 + 12 * (1 - entry.warmth)) * Theme.scale
                text: entry.temperature
                color: Theme.text
                font.pixelSize: Theme.body
                font.weight: Font.DemiBold
            }
            PlainText {
                anchors.horizontalCenter: parent.horizontalCenter
                y: 84 * Theme.scale
                text: entry.chance
                color: Theme.rain
                font.pixelSize: Theme.tiny
            }
            // How much falls; hours that stand side by side make one picture.
            Rectangle {
                visible: entry.wetness > 0
                x: 1
                width: parent.width - 2
                height: Math.max(3, 22 * Math.sqrt(entry.wetness)) * Theme.scale
                y: 123 * Theme.scale - height
                radius: 2
                color: Theme.rain
                opacity: 0.75
            }
            Row {
                anchors.horizontalCenter: parent.horizontalCenter
                y: 127 * Theme.scale
                spacing: 2
                Sign {
                    anchors.verticalCenter: parent.verticalCenter
                    visible: entry.wind !== ""
                    size: 12 * Theme.scale
                    name: "arrow"
                    ink: Theme.wind
                    rotation: entry.direction + 180
                }
                PlainText {
                    text: entry.wind
                    color: Theme.muted
                    font.pixelSize: Theme.tiny
                }
            }
        }

        // More hours lie beyond an edge that fades.
        component Edge: Rectangle {
            id: edge
            property bool atEnd: false
            z: 2
            width: 28 * Theme.scale
            gradient: Gradient {
                orientation: Gradient.Horizontal
                GradientStop { position: 0; color: edge.atEnd ? Qt.alpha(Theme.card, 0) : Theme.card }
                GradientStop { position: 1; color: edge.atEnd ? Theme.card : Qt.alpha(Theme.card, 0) }
            }
        }
        Edge {
            parent: list
            height: list.height - 8
            visible: list.contentX > list.originX + 1
        }
        Edge {
            parent: list
            x: list.width - width
            height: list.height - 8
            atEnd: true
            visible: list.contentX + list.width < list.originX + list.contentWidth - 1
        }
    }
}
