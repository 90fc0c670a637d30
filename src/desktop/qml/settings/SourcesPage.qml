// Where the official warnings of each place come from, and how the last check went.
import QtQuick
import NimbaraPages
import NimbaraItems

ScrollPage {
    id: page

    readonly property Main main: Window.window as Main

    function leave() {
        if (main)
            main.page = main.last;
    }

    most: [760, 1560, 2360][lanes - 1] * Theme.scale
    onEnabledChanged: if (enabled) App.sources.open()
    Component.onCompleted: App.sources.open()
    Keys.onEscapePressed: leave()

    Item {
        width: page.inner
        height: Math.max(heading.height, back.height)
        PlainButton {
            id: back
            anchors.left: parent.left
            sign: LayoutMirroring.enabled ? "forth" : "back"
            explanation: App.sources.words.back
            onClicked: page.leave()
        }
        PlainText {
            id: heading
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            width: parent.width - back.width - 1.5 * Theme.space
            text: App.sources.words.title
            wrapMode: Text.Wrap
            horizontalAlignment: Text.AlignLeft
            color: Theme.text
            font.pixelSize: width < 420 * Theme.scale ? Theme.title : Theme.headline
            font.weight: Font.DemiBold
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }
    }
    PlainText {
        width: page.inner
        text: App.sources.places.count > 0 ? App.sources.words.hint : App.sources.words.none
        wrapMode: Text.Wrap
        horizontalAlignment: Text.AlignLeft
        color: Theme.muted
        font.pixelSize: Theme.body
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }

    Grid {
        id: grid
        width: page.inner
        columns: page.lanes
        spacing: 2 * Theme.space
        Repeater {
            model: App.sources.places
            SourceCard { width: (grid.width - (grid.columns - 1) * grid.spacing) / grid.columns }
        }
    }
}
