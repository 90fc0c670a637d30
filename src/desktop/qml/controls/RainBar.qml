// One step of a nowcast, or its sign in the legend. What falls is told by the pattern as well as by the colour: rain is
// full, sleet striped, snow dotted, what is not named hollow, and what is not known hatched.
import QtQuick
import NimbaraPages

Item {
    id: bar

    property string kind

    Rectangle {
        anchors.fill: parent
        visible: bar.kind === "rain" || bar.kind === "unknown"
        radius: 2
        color: bar.kind === "rain" ? Theme.rain : "transparent"
        border.width: 1.5
        border.color: Theme.rain
    }
    Item {
        anchors.fill: parent
        visible: bar.kind === "sleet"
        clip: true
        Repeater {
            model: bar.kind === "sleet" ? Math.ceil(bar.height / 5) : 0
            Rectangle {
                required property int index
                y: bar.height - 3 - 5 * index
                width: bar.width
                height: 3
                color: Theme.wind
            }
        }
    }
    Item {
        id: flakes
        readonly property real size: Math.max(2, Math.min(4, bar.width - 2))
        readonly property int rows: Math.max(1, Math.floor((bar.height + 3) / (size + 3)))
        readonly property int columns: Math.max(1, Math.floor((bar.width + 3) / (size + 3)))
        readonly property real begin: (bar.width - columns * (size + 3) + 3) / 2
        anchors.fill: parent
        visible: bar.kind === "snow"
        clip: true
        Repeater {
            model: bar.kind === "snow" ? flakes.rows * flakes.columns : 0
            Rectangle {
                required property int index
                x: flakes.begin + (index % flakes.columns) * (flakes.size + 3)
                y: bar.height - flakes.size - Math.floor(index / flakes.columns) * (flakes.size + 3)
                width: flakes.size
                height: flakes.size
                radius: flakes.size / 2
                color: Theme.air
            }
        }
    }
    Item {
        anchors.fill: parent
        visible: bar.kind === "notKnown"
        clip: true
        Repeater {
            model: bar.kind === "notKnown" ? Math.ceil((bar.width + bar.height) / 6) : 0
            Rectangle {
                required property int index
                x: 6 * index - bar.height / 2
                y: bar.height / 2
                width: 1.5 * bar.height
                height: 1
                rotation: -45
                color: Theme.muted
            }
        }
    }
}
