// An entry of the log, and a way to mute its like or to hear of it again.
import QtQuick
import NimbaraPages
import NimbaraItems

Item {
    id: entry

    required property string key
    required property string when
    required property string title
    required property string body
    required property string place
    required property string reason
    required property bool wasTold
    required property string kind
    required property string kindTitle
    required property string mute
    required property string muted
    required property string mutes
    required property string sentence
    property bool isChoosing
    readonly property bool isMuted: mutes !== ""
    signal choose()
    signal chosen()

    height: all.height
    Accessible.role: Accessible.ListItem
    Accessible.name: sentence

    component Part: PlainText {
        width: parent ? parent.width : 0
        visible: text !== ""
        wrapMode: Text.Wrap
        horizontalAlignment: Text.AlignLeft
        color: Theme.muted
        font.pixelSize: Theme.small
        Accessible.ignored: true
    }

    Rectangle {
        anchors.left: parent.left
        y: 4
        width: 4
        height: parent.height - 8
        radius: 2
        color: entry.wasTold ? Theme.accent : Theme.outline
    }
    Column {
        id: all
        anchors.right: parent.right
        width: parent.width - 2 * Theme.space
        spacing: 2

        Item {
            width: parent.width
            height: Math.max(heading.height, silence.height)
            Column {
                id: heading
                anchors.left: parent.left
                width: parent.width - silence.width - Theme.space
                spacing: 2
                Part { text: entry.when + (entry.place !== "" ? " · " + entry.place : "") }
                Part {
                    text: entry.title
                    color: entry.wasTold ? Theme.text : Theme.muted
                    font.pixelSize: Theme.body
                    font.weight: Font.DemiBold
                }
            }
            PlainButton {
                id: silence
                anchors.right: parent.right
                ink: entry.isMuted || entry.isChoosing ? Theme.accent : Theme.muted
                sign: entry.isMuted ? "bell" : "silence"
                explanation: entry.isMuted ? App.notifications.words.unmute + ": " + entry.kindTitle : entry.mute
                isExpandable: !entry.isMuted
                isExpanded: entry.isChoosing
                onClicked: entry.isMuted ? App.notifications.unmute(entry.mutes) : entry.choose()
            }
        }
        Part {
            text: entry.body
            maximumLineCount: 4
            elide: Text.ElideRight
            color: Theme.text
        }
        Part { text: entry.reason }
        Part { text: entry.muted; color: Theme.accent }
        Loader {
            width: parent.width
            height: item ? (item as Item).implicitHeight : 0
            active: entry.isChoosing && !entry.isMuted
            visible: active
            sourceComponent: Column {
                topPadding: Theme.space
                spacing: Theme.space
                Part {
                    text: entry.mute
                    color: Theme.text
                    Accessible.ignored: false
                    Accessible.role: Accessible.StaticText
                    Accessible.name: text
                }
                Flow {
                    width: parent.width
                    spacing: Theme.space
                    Repeater {
                        model: [
                            { span: "hour", text: App.notifications.words.forAnHour },
                            { span: "tomorrow", text: App.notifications.words.untilTomorrow },
                            { span: "forever", text: App.notifications.words.forEver }
                        ]
                        PlainButton {
                            required property var modelData
                            text: modelData.text
                            explanation: entry.mute + ", " + text
                            onClicked: {
                                App.notifications.mute(entry.kind, modelData.span);
                                entry.chosen();
                            }
                        }
                    }
                }
            }
        }
    }
}
