// What is on the map: its layers, to be switched, and the warnings and places to go to.
import QtQuick
import QtQuick.Templates as T
import NimbaraPages
import NimbaraItems

Rectangle {
    id: panel

    property real most: 600
    signal chosen

    height: Math.min(most, content.height + 2 * Theme.space)
    radius: Theme.radius
    color: Qt.alpha(Theme.card, 0.96)
    border.width: 1
    border.color: Theme.outline

    MouseArea { anchors.fill: parent; onWheel: {} }

    component Title: PlainText {
        width: parent.width
        topPadding: 6
        text: App.map.words.legend
        horizontalAlignment: Text.AlignLeft
        color: Theme.muted
        font.pixelSize: Theme.tiny
        font.weight: Font.DemiBold
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }

    component Chip: Pressable {
        id: chip
        required property bool isOn
        width: Math.min(implicitWidth, panel.width - 2 * Theme.space)
        implicitHeight: Math.max(30 * Theme.scale, label.implicitHeight + 10)
        leftPadding: 11
        rightPadding: 11
        spokenRole: Accessible.CheckBox
        isCheckable: true
        isChecked: isOn
        background: Rectangle {
            radius: height / 2
            color: chip.isOn ? Theme.accent : "transparent"
            opacity: chip.down ? 0.8 : chip.hovered ? 0.9 : 1
            border.width: chip.visualFocus ? 2 : 1
            border.color: chip.visualFocus ? Theme.text : chip.isOn ? Theme.accent : Theme.muted
        }
        contentItem: PlainText {
            id: label
            text: chip.text
            elide: Text.ElideRight
            verticalAlignment: Text.AlignVCenter
            color: chip.isOn ? Theme.accentText : Theme.text
            font.pixelSize: Theme.small
        }
    }

    component Line: Pressable {
        id: line
        property string title
        property string note
        property color dot
        width: parent.width
        height: Math.max(32 * Theme.scale, words.implicitHeight + 10)
        background: Rectangle {
            radius: 8
            color: line.hovered ? Theme.raised : "transparent"
            border.width: line.visualFocus ? 2 : 0
            border.color: Theme.accent
        }
        contentItem: Item {
            Rectangle {
                x: line.mirrored ? parent.width - width - 4 : 4
                anchors.verticalCenter: parent.verticalCenter
                width: 11
                height: 11
                radius: 5.5
                color: line.dot
            }
            Column {
                id: words
                anchors.verticalCenter: parent.verticalCenter
                anchors.left: parent.left
                anchors.leftMargin: 24
                anchors.right: parent.right
                PlainText {
                    width: parent.width
                    text: line.title
                    horizontalAlignment: Text.AlignLeft
                    elide: Text.ElideRight
                    color: Theme.text
                    font.pixelSize: Theme.small
                }
                PlainText {
                    width: parent.width
                    visible: text !== ""
                    text: line.note
                    horizontalAlignment: Text.AlignLeft
                    wrapMode: Text.Wrap
                    maximumLineCount: 3
                    elide: Text.ElideRight
                    color: Theme.muted
                    font.pixelSize: Theme.tiny
                }
            }
        }
    }

    Flickable {
        x: Theme.space
        y: Theme.space
        width: parent.width - 2 * Theme.space
        height: parent.height - 2 * Theme.space
        contentHeight: content.height
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        interactive: contentHeight > height
        T.ScrollBar.vertical: ThinBar {}

        Column {
            id: content
            width: parent.width

            Title {
                topPadding: 0
                bottomPadding: 6
            }
            Flow {
                width: parent.width
                spacing: 6
                Repeater {
                    model: App.map.layers
                    Chip {
                        required property string name
                        required property string title
                        required property string note
                        text: title
                        Accessible.name: Theme.joined([title, note], ", ")
                        onClicked: App.map.toggle(name)
                    }
                }
            }
            // What is to be known of a layer that is shown.
            Repeater {
                model: App.map.layers
                PlainText {
                    required property string title
                    required property string note
                    required property bool isOn
                    width: content.width
                    visible: isOn && note !== ""
                    topPadding: 4
                    text: title + ": " + note
                    horizontalAlignment: Text.AlignLeft
                    wrapMode: Text.Wrap
                    color: Theme.muted
                    font.pixelSize: Theme.tiny
                    Accessible.ignored: true
                }
            }
            Title {
                visible: App.map.things.count > 0
                text: App.map.words.onMap
            }
            Repeater {
                model: App.map.things
                Line {
                    required property int index
                    required property string kind
                    required property string level
                    required property string sentence
                    required title
                    required note
                    dot: level === "" ? Theme.accent : Theme.alertInk(level)
                    Accessible.name: sentence
                    onClicked: {
                        App.map.pickRow(index);
                        panel.chosen();
                    }
                }
            }
        }
    }
}
