// The heading of a page of a place: its name, and the menu that goes to another one.
import QtQuick
import NimbaraPages
import NimbaraItems

Pressable {
    id: heading

    property color ink: Theme.text
    property real size: Theme.headline
    property string lead  // the page's name, where the place alone does not say it
    readonly property Main main: Window.window as Main

    implicitWidth: words.implicitWidth + sign.width + Theme.space
    implicitHeight: words.height
    hoverEnabled: true
    enabled: App.now.hasPlace
    onClicked: if (main) main.switchPlace("", heading)
    // Whoever has come by the keys opens it with them; whoever has come to the page scrolls it.
    Keys.onDownPressed: event => {
        if (visualFocus)
            clicked();
        else
            event.accepted = false;
    }
    spokenRole: Accessible.Heading
    Accessible.name: Theme.joined([heading.lead, App.words.switchPlace + ": " + App.now.place], ", ")

    contentItem: Item {
        Rectangle {
            x: -Theme.space
            y: -4
            width: words.width + sign.width + 3 * Theme.space
            height: parent.height + 8
            radius: 12
            color: heading.ink
            opacity: heading.hovered || heading.down ? 0.12 : 0
        }
        PlainText {
            id: words
            width: Math.min(implicitWidth, heading.width - sign.width - Theme.space)
            text: Theme.joined([heading.lead, App.now.place], "  ·  ")
            horizontalAlignment: Text.AlignLeft
            wrapMode: Text.Wrap
            maximumLineCount: 3
            elide: Text.ElideRight
            color: heading.ink
            font.pixelSize: heading.size
            font.weight: Font.DemiBold
        }
        Sign {
            id: sign
            visible: heading.enabled
            anchors.left: words.right
            anchors.leftMargin: Theme.space
            anchors.verticalCenter: words.verticalCenter
            size: 22 * Theme.scale
            name: "down"
            ink: heading.ink
        }
        Rectangle {
            x: -Theme.space
            y: -4
            width: words.width + sign.width + 3 * Theme.space
            height: parent.height + 8
            visible: heading.visualFocus
            radius: 12
            color: "transparent"
            border.width: 2
            border.color: heading.ink
        }
    }
}
