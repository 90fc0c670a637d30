// In the present's head while its forecast is not there: its outlines, or why it does not come and what happens next.
import QtQuick
import NimbaraPages
import NimbaraItems

Column {
    id: arrival

    readonly property string phase: App.first.arrival.phase

    spacing: Theme.space

    Row {
        visible: arrival.phase === "loading"
        spacing: 3 * Theme.space
        Rectangle {
            width: 112 * Theme.scale
            height: 84 * Theme.scale
            radius: 14
            color: Qt.rgba(1, 1, 1, 0.16)
        }
        Column {
            anchors.verticalCenter: parent.verticalCenter
            spacing: 12 * Theme.scale
            Repeater {
                model: [120, 88, 104]
                Rectangle {
                    required property int modelData
                    width: modelData * Theme.scale
                    height: 13 * Theme.scale
                    radius: 6
                    color: Qt.rgba(1, 1, 1, 0.16)
                }
            }
        }
    }
    PlainText {
        width: parent.width
        text: arrival.phase === "" ? App.words.noReading : App.first.arrival.title
        wrapMode: Text.Wrap
        horizontalAlignment: Text.AlignLeft
        color: "white"
        font.pixelSize: arrival.phase === "loading" ? Theme.body : Theme.title
        font.weight: arrival.phase === "loading" ? Font.Normal : Font.DemiBold
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
    PlainText {
        width: Math.min(parent.width, 620 * Theme.scale)
        visible: text !== ""
        text: App.first.arrival.text
        wrapMode: Text.Wrap
        horizontalAlignment: Text.AlignLeft
        color: "white"
        font.pixelSize: Theme.body
        Accessible.role: Accessible.AlertMessage
        Accessible.name: text
    }
    PlainButton {
        visible: arrival.phase === "failed" || arrival.phase === "offline"
        ink: "white"
        text: App.first.words.again
        enabled: !App.now.isLoading
        onClicked: App.refresh()
    }
}
