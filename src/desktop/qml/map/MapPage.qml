// The map: land and sea with the user's places, areas of official warnings and earthquakes; moved by mouse, touch and
// keys.
import QtQuick
import NimbaraPages
import NimbaraItems

FocusScope {
    id: page

    readonly property bool isCurrent: parent?.isShown ?? false
    readonly property bool isWide: width >= 760
    readonly property real panelWidth: isWide ? 264 * Theme.scale : width - 2 * Theme.space
    property bool isPanelOpen: false
    readonly property Main main: Window.window as Main

    Binding { target: App.map; property: "isShown"; value: page.isCurrent && page.Window.visibility !== Window.Minimized && page.Window.visibility !== Window.Hidden }
    Component.onDestruction: App.map.isShown = false

    Connections {
        target: App.map
        function onWanted(kind, id, place) {
            if (place !== "")
                App.selectPlace(place);
            if (kind === "warning" && place === "") {
                App.openAlert = id;
                return;
            }
            if (kind === "station")
                App.station.chooseAround(id);
            if (page.main)
                page.main.page = kind === "station" ? "station" : kind === "place" ? "now" : "hazards";
        }
    }

    Keys.onPressed: event => {
        if (event.modifiers & (Qt.ControlModifier | Qt.AltModifier | Qt.MetaModifier))
            return;
        const step = event.modifiers & Qt.ShiftModifier ? 16 : 80;
        const side = LayoutMirroring.enabled ? -step : step;
        event.accepted = true;
        glide.stop();
        switch (event.key) {
        case Qt.Key_Left: App.map.drag(side, 0); break;
        case Qt.Key_Right: App.map.drag(-side, 0); break;
        case Qt.Key_Up: App.map.drag(0, step); break;
        case Qt.Key_Down: App.map.drag(0, -step); break;
        case Qt.Key_Plus:
        case Qt.Key_Equal: App.map.zoomBy(0.5); break;
        case Qt.Key_Minus: App.map.zoomBy(-0.5); break;
        case Qt.Key_Home: App.map.goHome(); break;
        case Qt.Key_Escape: App.map.dismiss(); break;
        case Qt.Key_Return:
        case Qt.Key_Enter: App.map.pick(area.width / 2, area.height / 2); break;
        default: event.accepted = radar.visible && radar.take(event);
        }
    }

    Item {
        id: head
        width: page.width
        height: heading.height + 2.5 * Theme.space
        PlaceHeading {
            id: heading
            x: page.isWide ? 3 * Theme.space : 1.5 * Theme.space
            y: 1.25 * Theme.space
            width: parent.width - 2 * x
            lead: App.map.words.title
            size: page.width < 560 * Theme.scale ? Theme.title : Math.round(1.3 * Theme.title)
        }
    }

    Item {
        id: area
        y: head.height
        width: parent.width
        height: parent.height - y
        clip: true
        focus: true
        activeFocusOnTab: true
        Accessible.role: Accessible.Graphic
        Accessible.name: App.map.description
        Accessible.description: App.map.words.hint
        Accessible.focusable: true
        onWidthChanged: App.map.resize(width, height)
        onHeightChanged: App.map.resize(width, height)

        MapItem {
            objectName: "map"
            anchors.fill: parent
            model: App.map
            sea: Theme.sea
            land: Theme.land
            border: Theme.dark ? "#5c6b7d" : "#a9b4bd"
            water: Theme.dark ? "#3b4a5c" : "#b7c9d8"
            ink: Theme.text
            mark: Theme.accent
            levels: ({
                info: Theme.alertInk("info"),
                advisory: Theme.alertInk("advisory"),
                warning: Theme.alertInk("warning"),
                critical: Theme.alertInk("critical")
            })
            ages: Theme.ageColours
            letters: Theme.tiny
        }

        Rectangle {
            anchors.fill: parent
            color: "transparent"
            visible: area.activeFocus
            border.width: 2
            border.color: Theme.accent
        }

        MouseArea {
            id: hand
            property point last
            property real way: 0
            property real lastTime: 0
            property real speedX: 0
            property real speedY: 0
            anchors.fill: parent
            enabled: !pinch.active
            cursorShape: pressed && way > 4 ? Qt.ClosedHandCursor : Qt.ArrowCursor
            onPressed: mouse => {
                area.forceActiveFocus();
                glide.stop();
                last = Qt.point(mouse.x, mouse.y);
                lastTime = Date.now();
                speedX = speedY = way = 0;
            }
            onPositionChanged: mouse => {
                const x = mouse.x - last.x, y = mouse.y - last.y;
                const time = Math.max(1, Date.now() - lastTime);
                way += Math.abs(x) + Math.abs(y);
                if (way > 4)
                    App.map.drag(x, y);
                speedX = 0.6 * speedX + 0.4 * x / time;
                speedY = 0.6 * speedY + 0.4 * y / time;
                last = Qt.point(mouse.x, mouse.y);
                lastTime = Date.now();
            }
            onReleased: mouse => {
                if (way <= 4)
                    App.map.pick(mouse.x, mouse.y);
                else if (Theme.quick > 0 && Date.now() - lastTime < 60 && Math.hypot(speedX, speedY) > 0.15)
                    glide.start();
            }
            onDoubleClicked: mouse => App.map.zoomAbout(1, mouse.x, mouse.y)
            onWheel: wheel => {
                glide.stop();
                App.map.zoomAbout(wheel.angleDelta.y / 240, wheel.x, wheel.y);
            }
        }
        PinchHandler {
            id: pinch
            property real before: 1
            target: null
            acceptedDevices: PointerDevice.TouchScreen | PointerDevice.TouchPad
            onActiveChanged: before = 1
            onActiveScaleChanged: {
                if (!active || activeScale <= 0)
                    return;
                App.map.zoomAbout(Math.log2(activeScale / before), centroid.position.x, centroid.position.y);
                before = activeScale;
            }
        }
        // What was thrown comes to rest.
        FrameAnimation {
            id: glide
            onTriggered: {
                const time = Math.min(60, 1000 * frameTime);
                App.map.drag(hand.speedX * time, hand.speedY * time);
                const rest = Math.pow(0.996, time);
                hand.speedX *= rest;
                hand.speedY *= rest;
                if (Math.hypot(hand.speedX, hand.speedY) < 0.02)
                    stop();
            }
        }

        MapPanel {
            id: panel
            x: page.isWide ? 2 * Theme.space : Theme.space
            y: page.isWide ? 2 * Theme.space : Theme.space
            width: page.panelWidth
            most: area.height - 8 * Theme.space
            visible: page.isWide || page.isPanelOpen
            onChosen: page.isPanelOpen = false
        }

        MapCard {
            id: card
            x: page.isWide ? parent.width - width - 2 * Theme.space : Theme.space
            y: page.isWide ? 2 * Theme.space : parent.height - height - Theme.space
            width: page.panelWidth
            visible: App.map.card.isShown && !(page.isPanelOpen && !page.isWide)
            onClosed: area.forceActiveFocus()
        }

        RadarBar {
            id: radar
            // Between the panel and the buttons, in the middle where there is room.
            readonly property real first: page.isWide ? panel.x + panel.width + 2 * Theme.space : Theme.space
            readonly property real last: area.width - (page.isWide ? knobs.width + 4 * Theme.space : Theme.space)
            x: Math.max(first, Math.min((parent.width - width) / 2, last - width))
            y: parent.height - height - 4 * Theme.space
            width: Math.min(last - first, 640 * Theme.scale)
            visible: App.map.radar.isShown && !(card.visible && !page.isWide) && !(page.isPanelOpen && !page.isWide)
        }

        Binding { target: App.map.fields; property: "isDark"; value: Theme.dark }
        FieldBar {
            x: radar.x
            y: (radar.visible ? radar.y : parent.height - 4 * Theme.space) - height - (radar.visible ? Theme.space : 0)
            width: radar.width
            visible: App.map.fields.isShown && !(card.visible && !page.isWide) && !(page.isPanelOpen && !page.isWide)
        }

        Column {
            id: knobs
            x: parent.width - width - 2 * Theme.space
            y: page.isWide ? parent.height - height - 4 * Theme.space : 2 * Theme.space
            spacing: Theme.space

            component Knob: PlainButton {
                id: knob
                width: implicitHeight
                Rectangle {
                    z: -1
                    anchors.fill: parent
                    radius: height / 2
                    color: Theme.card
                    border.width: 1
                    border.color: Theme.outline
                }
            }
            Knob {
                visible: !page.isWide
                sign: page.isPanelOpen ? "cross" : "others"
                explanation: App.map.words.legend
                isExpandable: true
                isExpanded: page.isPanelOpen
                onClicked: page.isPanelOpen = !page.isPanelOpen
            }
            Knob {
                sign: "plus"
                explanation: App.map.words.closer
                onClicked: App.map.zoomBy(1)
            }
            Knob {
                sign: "minus"
                explanation: App.map.words.farther
                onClicked: App.map.zoomBy(-1)
            }
            Knob {
                sign: "place"
                visible: App.map.hasPlace
                explanation: App.map.words.home
                onClicked: App.map.goHome()
            }
        }

        // A length to read distances by, and whose data this is.
        Rectangle {
            visible: !(card.visible && !page.isWide)
            anchors.right: parent.right
            anchors.bottom: parent.bottom
            width: Math.min(foot.width + 2 * Theme.space, parent.width)
            height: foot.height + 6
            color: Qt.alpha(Theme.card, 0.85)
            Row {
                id: foot
                anchors.centerIn: parent
                spacing: 1.5 * Theme.space
                PlainText {
                    text: App.map.credit
                    color: Theme.muted
                    font.pixelSize: Theme.tiny
                    Accessible.role: Accessible.StaticText
                    Accessible.name: text
                }
                Item {
                    width: ruler.width
                    height: lengthText.height
                    PlainText {
                        id: lengthText
                        anchors.horizontalCenter: parent.horizontalCenter
                        text: App.map.scale.caption
                        color: Theme.text
                        font.pixelSize: Theme.tiny
                        Accessible.role: Accessible.StaticText
                        Accessible.name: text
                    }
                    Rectangle {
                        id: ruler
                        anchors.bottom: parent.bottom
                        width: Math.max(1, App.map.scale.length)
                        height: 2
                        color: Theme.text
                    }
                    Rectangle { anchors.bottom: parent.bottom; width: 2; height: 6; color: Theme.text }
                    Rectangle { anchors.bottom: parent.bottom; x: ruler.width - 2; width: 2; height: 6; color: Theme.text }
                }
            }
        }
    }
}
