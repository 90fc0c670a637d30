// The earthquakes one below the other, in the chosen order.
import QtQuick
import QtQuick.Controls.Basic
import NimbaraPages
import NimbaraItems

ListView {
    id: list

    model: App.hazards.quakes
    clip: true
    boundsBehavior: Flickable.StopAtBounds
    activeFocusOnTab: count > 0
    keyNavigationEnabled: true
    highlightMoveDuration: Theme.quick
    ScrollBar.vertical: ThinBar {}
    readonly property int spokenRole: Accessible.List
    Accessible.name: App.hazards.words.quakes

    // Keys move what is pointed at; what is pointed at on the map scrolls into view here.
    onActiveFocusChanged: if (activeFocus && App.hazards.highlighted < 0) App.hazards.highlighted = Math.max(0, currentIndex)
    onCurrentIndexChanged: if (activeFocus) App.hazards.highlighted = currentIndex
    Keys.onEscapePressed: App.hazards.highlighted = -1
    Connections {
        target: App.hazards
        function onHighlightedChanged() {
            if (App.hazards.highlighted < 0 || pointer.hovered)
                return;
            list.currentIndex = App.hazards.highlighted;
            list.positionViewAtIndex(App.hazards.highlighted, ListView.Contain);
        }
    }
    HoverHandler {
        id: pointer
        onPointChanged: if (hovered) App.hazards.highlighted = list.indexAt(point.position.x + list.contentX, point.position.y + list.contentY)
        onHoveredChanged: if (!hovered && !list.activeFocus) App.hazards.highlighted = -1
    }

    delegate: Rectangle {
        id: quake

        required property int index
        required property string magnitude
        required property string place
        required property string note
        required property string age
        required property double ageClass
        required property bool isStrong
        required property string sentence

        readonly property bool isPointedAt: App.hazards.highlighted === index

        width: list.width
        height: Math.max(52 * Theme.scale, words.height + Theme.space)
        radius: 10
        color: isPointedAt ? Theme.raised : "transparent"
        border.width: isPointedAt && list.activeFocus ? 2 : 0
        border.color: Theme.accent
        Accessible.role: Accessible.ListItem
        Accessible.name: sentence
        Accessible.focusable: true

        Rectangle {
            id: badge
            anchors.verticalCenter: parent.verticalCenter
            x: LayoutMirroring.enabled ? parent.width - width - 6 : 6
            width: 44 * Theme.scale
            height: 30 * Theme.scale
            radius: height / 2
            color: Qt.alpha(Theme.ageColours[quake.ageClass], Theme.dark ? 0.24 : 0.16)
            border.width: quake.isStrong ? 2 : 0
            border.color: Theme.ageColours[quake.ageClass]
            PlainText {
                anchors.centerIn: parent
                text: quake.magnitude
                color: Theme.text
                font.pixelSize: Theme.body
                font.weight: quake.isStrong ? Font.Bold : Font.DemiBold
            }
        }
        Column {
            id: words
            anchors.verticalCenter: parent.verticalCenter
            x: LayoutMirroring.enabled ? 8 : badge.width + 16
            width: parent.width - badge.width - 30
            PlainText {
                width: parent.width
                text: quake.place
                wrapMode: Text.Wrap
                maximumLineCount: 2
                elide: Text.ElideRight
                color: Theme.text
                font.pixelSize: Theme.small
                font.weight: Font.DemiBold
            }
            PlainText {
                width: parent.width
                text: Theme.joined([quake.age, quake.note], "  ·  ")
                wrapMode: Text.Wrap
                color: Theme.muted
                font.pixelSize: Theme.tiny
            }
        }
    }
}
