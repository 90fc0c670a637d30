// What the radar's colours mean, in millimetres an hour, and whose picture it is.
import QtQuick
import NimbaraPages
import NimbaraItems

Item {
    id: legend

    readonly property var radar: App.map.radar
    // So many amounts that their numbers have room.
    readonly property int every: Math.max(1, Math.ceil(radar.colours.count * 26 * Theme.scale / Math.max(1, colours.width)))

    implicitHeight: Math.max(words.height, colours.y + colours.height + amounts.height) + 3 + credit.height
    height: implicitHeight
    Accessible.role: Accessible.StaticText
    Accessible.name: radar.words.legend

    PlainText {
        id: words
        anchors.left: parent.left
        width: Math.min(implicitWidth, 0.3 * parent.width)
        text: legend.radar.words.legend
        horizontalAlignment: Text.AlignLeft
        wrapMode: Text.Wrap
        color: Theme.muted
        font.pixelSize: Theme.tiny
        Accessible.ignored: true
    }
    Row {
        id: colours
        y: 3
        anchors.left: words.right
        anchors.leftMargin: Theme.space
        anchors.right: bare.left
        anchors.rightMargin: 1.5 * Theme.space
        height: 10 * Theme.scale
        Repeater {
            model: legend.radar.colours
            Item {
                id: step
                required property int index
                required property string colour
                required property string amount
                width: colours.width / Math.max(1, legend.radar.colours.count)
                height: colours.height
                Rectangle {
                    anchors.fill: parent
                    color: Theme.land
                }
                Rectangle {
                    anchors.fill: parent
                    color: step.colour
                }
                PlainText {
                    anchors.top: parent.bottom
                    anchors.topMargin: 1
                    anchors.left: parent.left
                    visible: step.index % legend.every === 0
                    text: step.amount
                    color: Theme.muted
                    font.pixelSize: Theme.tiny
                    Accessible.ignored: true
                }
            }
        }
    }
    Row {
        id: bare
        anchors.right: parent.right
        spacing: 5
        Rectangle {
            anchors.verticalCenter: parent.verticalCenter
            width: 14 * Theme.scale
            height: 10 * Theme.scale
            color: Theme.land
            border.width: 1
            border.color: Theme.outline
            Rectangle {
                anchors.fill: parent
                color: "#4880848a"
            }
        }
        PlainText {
            text: legend.radar.view.veil
            color: Theme.muted
            font.pixelSize: Theme.tiny
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
    }
    // As high as the amounts below their colours.
    PlainText {
        id: amounts
        visible: false
        text: "0"
        font.pixelSize: Theme.tiny
        Accessible.ignored: true
    }
    PlainText {
        id: credit
        anchors.bottom: parent.bottom
        width: parent.width
        text: legend.radar.view.credit
        horizontalAlignment: Text.AlignLeft
        elide: Text.ElideRight
        color: Theme.muted
        font.pixelSize: Theme.tiny
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
}
