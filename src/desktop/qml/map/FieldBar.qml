// A field of the weather model on the map: which, of what hour, what its colours mean, and that it is a forecast.
import QtQuick
import QtQuick.Controls.Basic
import NimbaraPages
import NimbaraItems

FocusScope {
    id: bar

    readonly property var fields: App.map.fields
    readonly property var view: fields.view

    height: content.height + 2 * Theme.space
    Accessible.role: Accessible.Grouping
    Accessible.name: view.sentence

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
            height: Math.max(title.height, time.height)
            PlainText {
                id: title
                anchors.verticalCenter: parent.verticalCenter
                anchors.left: parent.left
                text: Theme.joined([bar.view.title, bar.view.unit], ", ")
                color: Theme.text
                font.pixelSize: Theme.small
                font.weight: Font.DemiBold
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
            PlainText {
                id: time
                anchors.verticalCenter: parent.verticalCenter
                anchors.right: parent.right
                text: bar.view.time
                color: Theme.accent
                font.pixelSize: Theme.body
                font.weight: Font.DemiBold
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
        }
        Slider {
            id: slider
            objectName: "fieldHours"
            width: parent.width
            height: visible ? 30 * Theme.scale : 0
            visible: bar.view.hourCount > 1
            from: 0
            to: Math.max(1, bar.view.hourCount - 1)
            stepSize: 1
            snapMode: Slider.SnapAlways
            Accessible.name: App.map.words.modelTimes
            Accessible.description: bar.view.sentence
            onMoved: bar.fields.choose(value)
            Binding on value { value: bar.view.hour; when: !slider.pressed }
            background: Rectangle {
                x: slider.leftPadding
                y: (slider.height - height) / 2
                width: slider.availableWidth
                height: 4
                radius: 2
                color: Theme.raised
                border.width: 1
                border.color: Theme.outline
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
        PlainText {
            width: parent.width
            visible: text !== ""
            text: bar.view.note
            horizontalAlignment: Text.AlignLeft
            wrapMode: Text.Wrap
            color: Theme.text
            font.pixelSize: Theme.small
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        Row {
            id: colours
            width: parent.width
            visible: bar.fields.colours.count > 0
            Repeater {
                model: bar.fields.colours
                Column {
                    id: step
                    required property int index
                    required property string colour
                    required property string amount
                    width: colours.width / Math.max(1, bar.fields.colours.count)
                    Rectangle {
                        width: parent.width
                        height: 8 * Theme.scale
                        color: step.colour
                    }
                    PlainText {
                        text: step.amount
                        color: Theme.muted
                        font.pixelSize: Theme.tiny
                        Accessible.ignored: true
                    }
                }
            }
        }
        PlainText {
            width: parent.width
            text: bar.view.credit
            horizontalAlignment: Text.AlignLeft
            elide: Text.ElideRight
            color: Theme.muted
            font.pixelSize: Theme.tiny
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
    }
}
