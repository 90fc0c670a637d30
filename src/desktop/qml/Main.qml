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
        { name: "now", title: app.words.now, sky: "partlyCloudy", sign: "" },
        { name: "hours", title: app.words.hours, sky: "lightRain", sign: "" },
        { name: "places", title: app.words.places, sky: "", sign: "place" }
    ]
    // A narrow window has no room for all of them.
    readonly property int shownPages: isWide || pages.length <= 5 ? pages.length : 4
    readonly property var otherPages: pages.slice(shownPages)
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
    Instantiator {
        model: window.pages
        Shortcut {
            required property int index
            required property var modelData
            sequence: "Ctrl+" + (index + 1)
            onActivated: window.page = modelData.name
        }
    }
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
                columns: window.isWide ? 1 : window.shownPages + 1
                spacing: Theme.space
                readonly property int slots: window.shownPages + (window.otherPages.length > 0 ? 1 : 0)
                readonly property real slot: window.isWide
                    ? 84 * Theme.scale
                    : Math.min(132 * Theme.scale, window.width / slots - Theme.space)

                Repeater {
                    model: window.pages.slice(0, window.shownPages)

                    NavButton {
                        required property var modelData
                        width: navigation.slot
                        sky: modelData.sky
                        sign: modelData.sign
                        text: modelData.title
                        checked: window.page === modelData.name
                        onClicked: window.page = modelData.name
                    }
                }

                NavButton {
                    id: others
                    visible: window.otherPages.length > 0
                    width: navigation.slot
                    sign: "others"
                    text: app.words.otherPages
                    checked: window.otherPages.some(page => page.name === window.page)
                    onClicked: otherPages.open()
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

    Popup {
        id: otherPages
        x: window.width - width - Theme.space
        y: window.height - height - 72 * Theme.scale
        modal: true
        padding: Theme.space
        background: Rectangle {
            radius: Theme.radius
            color: Theme.card
            border.color: Theme.outline
        }
        contentItem: Column {
            spacing: Theme.space

            Repeater {
                model: window.otherPages

                NavButton {
                    required property var modelData
                    width: 132 * Theme.scale
                    sky: modelData.sky
                    sign: modelData.sign
                    text: modelData.title
                    checked: window.page === modelData.name
                    onClicked: {
                        window.page = modelData.name;
                        otherPages.close();
                    }
                }
            }
        }
    }
}
