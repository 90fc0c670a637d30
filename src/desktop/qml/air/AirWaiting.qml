// The outlines of the page of the air until its feeds have answered.
import QtQuick
import NimbaraPages

Column {
    id: waiting

    spacing: 2 * Theme.space
    Accessible.ignored: true

    SequentialAnimation on opacity {
        running: waiting.visible && !Theme.calm
        loops: Animation.Infinite
        NumberAnimation { to: 0.55; duration: 900; easing.type: Easing.InOutSine }
        NumberAnimation { to: 1; duration: 900; easing.type: Easing.InOutSine }
    }

    Repeater {
        model: [150, 250, 180]
        Rectangle {
            id: outline
            required property int modelData
            width: waiting.width
            height: modelData * Theme.scale
            radius: Theme.radius
            color: Theme.card
            border.color: Theme.outline
            Repeater {
                model: [120, 200, 260]
                Rectangle {
                    required property int modelData
                    required property int index
                    x: 2 * Theme.space
                    y: 2 * Theme.space + 34 * index * Theme.scale
                    width: Math.min(modelData * Theme.scale, waiting.width - 4 * Theme.space)
                    height: (index === 1 ? 22 : 12) * Theme.scale
                    radius: 6
                    color: Theme.raised
                }
            }
        }
    }
}
