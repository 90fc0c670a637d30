// The window: the pages and the way between them, at the side of a wide window and below in a narrow one.
import QtQuick
import NimbaraPages
import NimbaraItems

Window {
    id: window

    property string page: "now"
    property string theme  // in place of the setting
    readonly property bool isWide: width >= 720
    readonly property var pages: [
        { name: "now", title: App.words.now, sky: "partlyCloudy", sign: "" },
        { name: "hours", title: App.words.hours, sky: "lightRain", sign: "" },
        { name: "hazards", title: App.words.hazards, sky: "", sign: "warning" },
        { name: "map", title: App.words.map, sky: "", sign: "map" },
        { name: "air", title: App.words.air, sky: "", sign: "air" },
        { name: "globe", title: App.words.globe, sky: "", sign: "globe" },
        { name: "places", title: App.words.places, sky: "", sign: "place" },
        { name: "notifications", title: App.words.notifications, sky: "", sign: "bell" },
        { name: "settings", title: App.words.settings, sky: "", sign: "gear" }
    ]
    // A narrow window has no room for all of them.
    readonly property int shownPages: isWide || pages.length <= 5 ? pages.length : 4
    readonly property var otherPages: pages.slice(shownPages)
    // Pages that belong to another one, and go back to where they were opened.
    readonly property var belongs: ({ sources: "hazards", station: "settings" })
    readonly property string way: belongs[page] ?? page
    property string last: "now"
    onPageChanged: if (!belongs[page]) last = page
    readonly property bool wantsPlace: App.isReady && !App.now.hasPlace

    // The first frame has been shown.
    property bool hasDrawn: false
    Timer {
        id: afterwards
        interval: 0
        onTriggered: window.hasDrawn = true
    }
    Connections {
        target: window
        enabled: !window.hasDrawn && !afterwards.running
        function onFrameSwapped() { afterwards.start() }
    }

    visible: true
    minimumWidth: 360
    minimumHeight: 480
    color: Theme.page
    title: App.now.hasPlace ? App.now.place + " – Nimbara" : "Nimbara"

    // Opens the menu of places with what was typed, below a heading or in the middle.
    function switchPlace(typed, heading) {
        switcher.active = true;
        (switcher.item as PlaceSwitcher).show(typed, heading);
    }

    function showKeys() {
        shortcuts.active = true;
        (shortcuts.item as KeyList).open();
    }

    // Typing goes to the search, wherever the keys are: what nothing in the window wants comes here.
    function type(event) {
        // By what is typed: each keyboard has the question mark elsewhere.
        const isControlled = event.modifiers & Qt.ControlModifier && event.key === Qt.Key_Question;
        if (event.text === "?" || isControlled) {
            event.accepted = true;
            showKeys();
            return;
        }
        const isCommand = event.modifiers & (Qt.ControlModifier | Qt.AltModifier | Qt.MetaModifier);
        if (isCommand || !App.switcher.beginsSearch(event.text))
            return;
        event.accepted = true;
        const welcome = (window.page === "now" ? now.item : hours.item) as WelcomePage;
        if (window.page === "places")
            (places.item as PlacesPage).begin(event.text);
        else if (welcome && welcome.enabled)
            welcome.begin(event.text);
        else
            switchPlace(event.text, null);
    }

    Component.onCompleted: contentItem.Keys.pressed.connect(type)

    readonly property string shownPlace: App.now.place + App.now.area

    Binding { target: Theme; property: "choice"; value: window.theme || App.settings.now.theme }
    Binding { target: Theme; property: "enlargement"; value: App.settings.now.textSize }
    Binding { target: Theme; property: "contrasting"; value: App.settings.now.isContrasting }
    Binding { target: Theme; property: "calm"; value: App.settings.now.isCalm }

    // Whoever goes to a page hears its heading and scrolls it.
    function enter(page) {
        if (order.holds(page, activeFocusItem))
            return;
        const target = page ? (page as ScrollPage)?.entry ?? order.headingBelow(page) : null;
        target?.forceActiveFocus(Qt.OtherFocusReason);
    }

    // To the navigation, and back to where the keys were.
    property Item left: null
    function changeArea() {
        const shown = areas.shown();
        if (!order.holds(bar, window.activeFocusItem)) {
            left = window.activeFocusItem;
            const at = pages.findIndex(page => page.name === window.way);
            (at < shownPages ? ways.itemAt(at) : others).forceActiveFocus(Qt.ShortcutFocusReason);
        } else if (left && order.holds(shown, left)) {
            left.forceActiveFocus(Qt.ShortcutFocusReason);
        } else {
            enter(shown);
        }
    }

    ReadingOrder { id: order }

    LayoutMirroring.enabled: Application.layoutDirection === Qt.RightToLeft
    LayoutMirroring.childrenInherit: true

    Shortcut { sequences: [StandardKey.Refresh, "Ctrl+R"]; onActivated: App.refresh() }
    Shortcut { sequences: ["F6", "Shift+F6"]; onActivated: window.changeArea() }
    Shortcut { sequences: ["F1", "Ctrl+?"]; onActivated: window.showKeys() }
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
            (places.item as PlacesPage).focusSearch();
        }
    }

    Shortcut { sequence: "Ctrl+K"; onActivated: window.switchPlace("", null) }
    Shortcut { sequence: "Alt+Left"; onActivated: App.stepPlace(-1) }
    Shortcut { sequence: "Alt+Right"; onActivated: App.stepPlace(1) }
    Shortcut {
        sequences: [StandardKey.Undo]
        enabled: window.page === "places" && App.undoText !== ""
        onActivated: App.undo()
    }

    Rectangle {
        id: bar
        readonly property real thickness: (window.isWide ? 92 : 64) * Theme.scale
        anchors.left: parent.left
        anchors.bottom: parent.bottom
        width: window.isWide ? thickness : parent.width
        height: window.isWide ? parent.height : thickness
        color: Theme.card

        Grid {
            id: navigation
            anchors.centerIn: window.isWide ? undefined : parent
            anchors.horizontalCenter: parent.horizontalCenter
            y: window.isWide ? 2 * Theme.space : 0
            columns: window.isWide ? 1 : window.shownPages + 1
            spacing: Theme.space
            readonly property int slots: window.shownPages + (window.otherPages.length > 0 ? 1 : 0)
            // All of them fit into a low window.
            readonly property real slotHeight: window.isWide
                ? Math.min(56 * Theme.scale, (bar.height - 4 * Theme.space) / slots - spacing)
                : 56 * Theme.scale
            readonly property real slot: window.isWide
                ? 84 * Theme.scale
                : Math.min(132 * Theme.scale, window.width / slots - Theme.space)

            Repeater {
                id: ways
                model: window.pages.slice(0, window.shownPages)

                NavButton {
                    required property var modelData
                    width: navigation.slot
                    height: navigation.slotHeight
                    sky: modelData.sky
                    sign: modelData.sign
                    text: modelData.title
                    isCurrent: window.way === modelData.name
                    onClicked: window.page = modelData.name
                }
            }

            NavButton {
                id: others
                visible: window.otherPages.length > 0
                width: navigation.slot
                sign: "others"
                text: App.words.otherPages
                isCurrent: window.otherPages.some(page => page.name === window.way)
                onClicked: {
                    otherPages.active = true;
                    (otherPages.item as OtherPages).open();
                }
            }
        }
    }

    Item {
        id: areas
        function shown() {
            for (const page of [now, hours, hazards, map, air, globe, places, notifications, settings, sources, station]) {
                if (page.isShown)
                    return page.item;
            }
            return null;
        }
        anchors.top: parent.top
        anchors.right: parent.right
        width: window.isWide ? parent.width - bar.thickness : parent.width
        height: window.isWide ? parent.height : parent.height - bar.thickness
        clip: true

        // Named by its file: a page's type is not even read before the page is first shown.
        component Page: Loader {
            required property string name
            required property string file
            property bool isOfPlace: false
            readonly property bool isShown: window.page === name
            property bool wasShown: false
            // A page opens at its top, with another place too.
            readonly property string shown: isOfPlace ? window.shownPlace : ""
            onShownChanged: toTop()
            function toTop() {
                const page = item as ScrollPage;
                if (page)
                    page.contentY = 0;
            }
            anchors.fill: parent
            active: isShown || wasShown
            source: file
            onLoaded: if (isShown) Qt.callLater(window.enter, item)
            onIsShownChanged: {
                if (!isShown)
                    return;
                wasShown = true;
                toTop();
                Qt.callLater(window.enter, item);
            }
            visible: isShown || opacity > 0
            enabled: isShown
            opacity: isShown ? 1 : 0
            Behavior on opacity { NumberAnimation { duration: Theme.quick } }
        }

        Page { id: now; name: "now"; isOfPlace: true; file: window.wantsPlace ? "WelcomePage.qml" : "NowPage.qml" }
        Page { id: hours; name: "hours"; isOfPlace: true; file: window.wantsPlace ? "WelcomePage.qml" : "HoursPage.qml" }
        Page { id: hazards; name: "hazards"; isOfPlace: true; file: "HazardsPage.qml" }
        Page { id: map; name: "map"; file: "MapPage.qml" }
        Page { id: air; name: "air"; isOfPlace: true; file: "AirPage.qml" }
        Page { id: globe; name: "globe"; file: "GlobePage.qml" }
        Page { id: places; name: "places"; file: "PlacesPage.qml" }
        Page { id: notifications; name: "notifications"; file: "NotificationsPage.qml" }
        Page { id: settings; name: "settings"; file: "SettingsPage.qml" }
        Page { id: sources; name: "sources"; file: "SourcesPage.qml" }
        Page { id: station; name: "station"; file: "StationPage.qml" }
        Connections {
            target: places.item
            function onChosen() { window.page = "now" }
        }
    }

    Loader {
        id: switcher
        active: false
        source: "PlaceSwitcher.qml"
        Connections {
            target: switcher.item
            function onManaged() { window.page = "places" }
        }
    }
    Loader {
        id: shortcuts
        active: false
        source: "KeyList.qml"
    }
    Loader {
        id: otherPages
        active: false
        source: "OtherPages.qml"
        Binding { target: otherPages.item; property: "pages"; value: window.otherPages }
        Binding { target: otherPages.item; property: "page"; value: window.page }
        Connections {
            target: otherPages.item
            function onChosen(name) { window.page = name }
        }
    }

    Loader {
        id: warning
        active: false
        source: "WarningSheet.qml"
        Connections {
            target: App
            function onOpenAlertChanged() {
                if (App.openAlert === "") {
                    if (warning.item)
                        (warning.item as WarningSheet).close();
                    return;
                }
                warning.active = true;
                (warning.item as WarningSheet).open();
            }
        }
        Connections {
            target: warning.item
            function onClosed() { App.openAlert = "" }
        }
    }
}
