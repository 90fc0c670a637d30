// Warnings one at a time, the gravest first, with the full text on demand.
import QtQuick
import NimbaraPages

Rectangle {
    id: pager

    readonly property int count: list.count
    readonly property var current: list.currentItem
    property bool isOpen: false

    height: content.height + 3 * Theme.space
    radius: Theme.radius
    color: Theme.alertColour(current ? current.level : "info")
    Accessible.role: Accessible.Grouping
    Accessible.name: app.words.alerts

    // Holds the values of each warning; draws nothing.
    ListView {
        id: list
        width: 1
        height: 1
        visible: false
        model: app.alerts
        onCountChanged: currentIndex = Math.max(0, Math.min(currentIndex, count - 1))
        delegate: Item {
            required property string severity
            required property string level
            required property string title
            required property string message
            required property string details
            required property string when
            required property string source
            height: 1
        }
    }

    Column {
        id: content
        x: 2 * Theme.space
        y: 1.5 * Theme.space
        width: parent.width - 4 * Theme.space
        spacing: 0.75 * Theme.space

        Text {
            width: parent.width
            text: pager.current ? pager.current.severity + ": " + pager.current.title : ""
            wrapMode: Text.Wrap
            color: Theme.text
            font.pixelSize: Theme.body
            font.weight: Font.DemiBold
            Accessible.role: Accessible.AlertMessage
            Accessible.name: text
        }
        Text {
            width: parent.width
            text: pager.current ? pager.current.message : ""
            visible: text !== ""
            wrapMode: Text.Wrap
            maximumLineCount: pager.isOpen ? 200 : 4
            elide: Text.ElideRight
            color: Theme.text
            font.pixelSize: Theme.body
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        Text {
            width: parent.width
            text: pager.isOpen && pager.current ? pager.current.details : ""
            visible: text !== ""
            wrapMode: Text.Wrap
            color: Theme.text
            font.pixelSize: Theme.small
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        Flow {
            width: parent.width
            spacing: Theme.space
            Text {
                height: 36
                verticalAlignment: Text.AlignVCenter
                text: pager.current ? [pager.current.when, pager.current.source].filter(part => part !== "").join("  ·  ") : ""
                color: Theme.text
                font.pixelSize: Theme.small
            }
            PlainButton {
                visible: pager.current !== null && pager.current.details !== ""
                ink: Theme.text
                text: pager.isOpen ? app.words.less : app.words.more
                onClicked: pager.isOpen = !pager.isOpen
            }
            PlainButton {
                visible: pager.count > 1
                ink: Theme.text
                sign: LayoutMirroring.enabled ? "forth" : "back"
                explanation: app.words.previous
                enabled: list.currentIndex > 0
                onClicked: list.currentIndex -= 1
            }
            Text {
                visible: pager.count > 1
                height: 36
                verticalAlignment: Text.AlignVCenter
                text: (list.currentIndex + 1) + " / " + pager.count
                color: Theme.text
                font.pixelSize: Theme.small
            }
            PlainButton {
                visible: pager.count > 1
                ink: Theme.text
                sign: LayoutMirroring.enabled ? "back" : "forth"
                explanation: app.words.next
                enabled: list.currentIndex < pager.count - 1
                onClicked: list.currentIndex += 1
            }
        }
    }
}
