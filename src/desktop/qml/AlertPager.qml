// Warnings one at a time, the most severe first, with the full text on demand.
import QtQuick
import NimbaraPages
import NimbaraItems

Rectangle {
    id: pager

    readonly property int count: list.count
    readonly property var current: list.currentItem
    readonly property bool isOpen: current !== null && App.openAlert === current.alertId

    height: content.height + 3 * Theme.space
    radius: Theme.radius
    color: Theme.alertColour(current ? current.level : "info")
    Accessible.role: Accessible.Grouping
    Accessible.name: App.words.alerts

    // Holds the values of each warning; draws nothing.
    ListView {
        id: list
        width: 1
        height: 1
        visible: false
        model: App.alerts
        onCountChanged: currentIndex = Math.max(0, Math.min(currentIndex, count - 1))
        delegate: Item {
            required property string alertId
            required property string severity
            required property string level
            required property string title
            required property string message
            required property string area
            required property string when
            required property string near
            required property string issuer
            required property string age
            required property bool hasDetails
            height: 1
        }
    }

    component Words: PlainText {
        width: parent.width
        visible: text !== ""
        wrapMode: Text.Wrap
        color: Theme.text
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }

    Column {
        id: content
        x: 2 * Theme.space
        y: 1.5 * Theme.space
        width: parent.width - 4 * Theme.space
        spacing: 0.75 * Theme.space

        Words {
            text: pager.current ? pager.current.severity + ": " + pager.current.title : ""
            font.pixelSize: Theme.body
            font.weight: Font.DemiBold
            Accessible.role: Accessible.AlertMessage
        }
        Words {
            text: pager.current ? pager.current.area : ""
            font.pixelSize: Theme.small
        }
        Words {
            text: pager.current ? pager.current.near : ""
            font.pixelSize: Theme.small
        }
        Words {
            text: pager.isOpen ? App.alertDetails : pager.current ? pager.current.message : ""
            maximumLineCount: pager.isOpen ? 1000 : 4
            elide: Text.ElideRight
            font.pixelSize: Theme.body
        }
        Flow {
            width: parent.width
            spacing: Theme.space
            Words {
                width: Math.min(implicitWidth, content.width)
                height: Math.max(implicitHeight, 36 * Theme.scale)
                verticalAlignment: Text.AlignVCenter
                text: pager.current ? Theme.joined([pager.current.when, pager.current.issuer, pager.current.age], "  ·  ") : ""
                font.pixelSize: Theme.small
            }
            PlainButton {
                visible: pager.current !== null && pager.current.hasDetails
                ink: Theme.text
                isExpandable: true
                isExpanded: pager.isOpen
                text: pager.isOpen ? App.words.less : App.words.more
                onClicked: App.openAlert = pager.isOpen ? "" : pager.current.alertId
            }
            Row {
                visible: pager.count > 1
                spacing: Theme.space
                PlainButton {
                    ink: Theme.text
                    sign: LayoutMirroring.enabled ? "forth" : "back"
                    explanation: enabled ? App.words.previousOf.replace("%1$@", list.currentIndex).replace("%2$@", pager.count) : App.words.previous
                    enabled: list.currentIndex > 0
                    onClicked: list.currentIndex -= 1
                }
                PlainText {
                    height: 36 * Theme.scale
                    verticalAlignment: Text.AlignVCenter
                    text: (list.currentIndex + 1) + " / " + pager.count
                    color: Theme.text
                    font.pixelSize: Theme.small
                }
                PlainButton {
                    ink: Theme.text
                    sign: LayoutMirroring.enabled ? "back" : "forth"
                    explanation: enabled ? App.words.nextOf.replace("%1$@", list.currentIndex + 2).replace("%2$@", pager.count) : App.words.next
                    enabled: list.currentIndex < pager.count - 1
                    onClicked: list.currentIndex += 1
                }
            }
        }
    }
}
