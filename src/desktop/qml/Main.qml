// The window: the pages and the way between them, at the side of a wide window and below in a narrow one.
import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import NimbaraPages

ApplicationWindow {
    id: window

    property string page: "now"
    property string theme: "system"
    readonly property bool isWide: width >= 720
    readonly property var pages: [
        { name: "now", title: app.words.now, sky: "partlyCloudy" },
        { name: "hours", title: app.words.hours, sky: "lightRain" },
        { name: "places", title: app.words.places, sky: "" }
    ]
    readonly property bool wantsPlace: app.isReady && !app.now.hasPlace

    visible: true
    minimumWidth: 360
    minimumHeight: 480
    color: Theme.page
    title: app.now.hasPlace ? app.now.place + " – Nimbara" : "Nimbara"
    onWantsPlaceChanged: if (wantsPlace) page = "places"
    Component.onCompleted: if (wantsPlace) page = "places"

    Binding { target: Theme; property: "choice"; value: window.theme }

    LayoutMirroring.enabled: Qt.application.layoutDirection === Qt.RightToLeft
    LayoutMirroring.childrenInherit: true

    Shortcut { sequences: [StandardKey.Refresh, "Ctrl+R"]; onActivated: app.refresh() }
    Shortcut { sequence: StandardKey.Quit; onActivated: Qt.quit() }
    Shortcut { sequence: "Ctrl+1"; onActivated: window.page = "now" }
    Shortcut { sequence: "Ctrl+2"; onActivated: window.page = "hours" }
    Shortcut { sequence: "Ctrl+3"; onActivated: window.page = "places" }
    Shortcut {
        sequence: StandardKey.Find
        onActivated: {
            window.page = "places";
            places.item.focusSearch();
        }
    }

    GridLayout {
        anchors.fill: parent
        columns: window.isWide ? 2 : 1
        rowSpacing: 0
        columnSpacing: 0

        Rectangle {
            Layout.row: window.isWide ? 0 : 1
            Layout.column: 0
            Layout.fillHeight: window.isWide
            Layout.fillWidth: !window.isWide
            Layout.preferredWidth: window.isWide ? 92 * Theme.scale : -1
            Layout.preferredHeight: window.isWide ? -1 : 64 * Theme.scale
            color: Theme.card

            Grid {
                id: navigation
                anchors.centerIn: window.isWide ? undefined : parent
                anchors.horizontalCenter: parent.horizontalCenter
                y: window.isWide ? 2 * Theme.space : 0
                columns: window.isWide ? 1 : 3
                spacing: Theme.space

                Repeater {
                    model: window.pages

                    NavButton {
                        required property var modelData
                        width: window.isWide ? 84 * Theme.scale : Math.min(132 * Theme.scale, window.width / 3 - Theme.space)
                        sky: modelData.sky
                        text: modelData.title
                        checked: window.page === modelData.name
                        onClicked: window.page = modelData.name
                    }
                }
            }
        }

        Item {
            Layout.row: 0
            Layout.column: window.isWide ? 1 : 0
            Layout.fillWidth: true
            Layout.fillHeight: true
            clip: true

            component Page: Loader {
                property string name
                readonly property bool isShown: window.page === name
                property bool wasShown: false
                anchors.fill: parent
                active: isShown || wasShown
                onIsShownChanged: if (isShown) wasShown = true
                visible: isShown || opacity > 0
                enabled: isShown
                opacity: isShown ? 1 : 0
                Behavior on opacity { NumberAnimation { duration: Theme.quick } }
            }

            Page { name: "now"; sourceComponent: NowPage {} }
            Page { name: "hours"; sourceComponent: HoursPage {} }
            Page { id: places; name: "places"; sourceComponent: PlacesPage { onChosen: window.page = "now" } }
        }
    }
}
