// In a line: whether official warnings were looked for here, and what came of it.
import QtQuick
import NimbaraPages
import NimbaraItems

// A row would take its own width from the text's, which takes it from the row.
Item {
    implicitHeight: Math.max(brief.height, briefSign.height, toSources.visible ? toSources.height : 0)

    Sign {
        id: briefSign
        anchors.left: parent.left
        anchors.verticalCenter: parent.verticalCenter
        visible: App.hazards.official.state !== "none"
        size: 16 * Theme.scale
        name: "warning"
        ink: App.hazards.official.isUnchecked ? Theme.alertInk("warning") : Theme.muted
    }
    PlainText {
        id: brief
        anchors.verticalCenter: parent.verticalCenter
        x: LayoutMirroring.enabled ? after : before
        readonly property real before: briefSign.visible ? briefSign.width + Theme.space : 0
        readonly property real after: toSources.visible ? toSources.width + Theme.space : 0
        width: Math.max(0, parent.width - before - after)
        text: App.hazards.official.brief
        wrapMode: Text.Wrap
        color: App.hazards.official.isUnchecked ? Theme.text : Theme.muted
        font.pixelSize: Theme.small
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
    SourcesLink {
        id: toSources
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        visible: App.hazards.official.isUnchecked || App.hazards.official.isUncovered
    }
}
