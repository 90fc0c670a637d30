// The globe: the earth with its day and night, satellites and earthquakes. In three dimensions where that is
// installed and the window has a graphics card's interface, else painted.
import QtQuick
import QtQuick.Controls.Basic
import NimbaraPages
import NimbaraItems

FocusScope {
    id: page

    readonly property bool isCurrent: parent?.isShown ?? false
    readonly property bool isWide: width >= 760
    // A graphics card that the processor imitates draws the scene in jerks.
    readonly property bool hasCard: App.globe.isInSpace && GraphicsInfo.api !== GraphicsInfo.Unknown && GraphicsInfo.api !== GraphicsInfo.Software
    readonly property bool isMoving: isCurrent && Theme.quick > 0
    readonly property real panelWidth: isWide ? 272 * Theme.scale : width - 2 * Theme.space
    property bool hasFailed: false  // the scene, where its modules are not installed
    property bool isLegendOpen: false

    Binding { target: App.globe; property: "isShown"; value: page.isCurrent && page.Window.visibility !== Window.Minimized && page.Window.visibility !== Window.Hidden }
    Component.onDestruction: App.globe.isShown = false

    Rectangle {
        anchors.fill: parent
        gradient: Gradient {
            GradientStop { position: 0; color: Theme.cosmos }
            GradientStop { position: 1; color: Qt.lighter(Theme.cosmos, 1.7) }
        }
    }

    // The picture needs no title; those who listen do.
    Item {
        width: page.width
        height: 1
        Accessible.role: Accessible.Heading
        Accessible.name: App.words.globe
    }

    Item {
        id: sky
        width: parent.width
        // A narrow window shows the globe above the card.
        height: parent.height - (card.visible && !page.isWide ? card.height + Theme.space : 0)
        focus: true
        activeFocusOnTab: true
        Accessible.role: Accessible.Graphic
        Accessible.name: App.globe.description
        Accessible.description: App.globe.words.hint
        onWidthChanged: App.globe.resize(width, height)
        onHeightChanged: App.globe.resize(width, height)

        Keys.onPressed: event => {
            const step = event.modifiers & Qt.ShiftModifier ? 1 : 6;
            const east = LayoutMirroring.enabled ? -step : step;
            event.accepted = true;
            switch (event.key) {
            case Qt.Key_Left: App.globe.turn(0, -step); break;
            case Qt.Key_Right: App.globe.turn(0, step); break;
            case Qt.Key_Up: App.globe.turn(step, 0); break;
            case Qt.Key_Down: App.globe.turn(-step, 0); break;
            case Qt.Key_Plus:
            case Qt.Key_Equal: App.globe.zoom(1.25); break;
            case Qt.Key_Minus: App.globe.zoom(0.8); break;
            case Qt.Key_Home: App.globe.goHome(); break;
            case Qt.Key_Escape: App.globe.dismiss(); break;
            case Qt.Key_Return:
            case Qt.Key_Enter: App.globe.pick(sky.width / 2, sky.height / 2); break;
            default: event.accepted = false;
            }
        }

        Loader {
            id: scene
            anchors.fill: parent
            source: page.hasCard && !page.hasFailed && App.globe.loadScene() ? "GlobeScene.qml" : ""
            onStatusChanged: if (status === Loader.Error) page.hasFailed = true
            opacity: status === Loader.Ready ? 1 : 0
            Binding {
                target: scene.item
                when: scene.status === Loader.Ready
                property: "pulse"
                value: pulse.running ? page.pulse : -1
            }
        }
        Loader {
            anchors.fill: parent
            active: scene.status !== Loader.Ready && !(page.hasCard && scene.status === Loader.Loading)
            sourceComponent: FlatGlobe { model: App.globe }
        }

        Rectangle {
            anchors.fill: parent
            color: "transparent"
            visible: sky.activeFocus
            border.width: 1
            border.color: Qt.alpha(Theme.cosmosInk, 0.35)
        }

        MouseArea {
            property point last
            property real way: 0
            anchors.fill: parent
            cursorShape: pressed && way > 4 ? Qt.ClosedHandCursor : Qt.ArrowCursor
            onPressed: mouse => {
                sky.forceActiveFocus();
                last = Qt.point(mouse.x, mouse.y);
                way = 0;
            }
            onPositionChanged: mouse => {
                way += Math.abs(mouse.x - last.x) + Math.abs(mouse.y - last.y);
                if (way > 4)
                    App.globe.drag(mouse.x - last.x, mouse.y - last.y);
                last = Qt.point(mouse.x, mouse.y);
            }
            onReleased: mouse => {
                if (way <= 4)
                    App.globe.pick(mouse.x, mouse.y);
            }
            onWheel: wheel => App.globe.zoom(Math.pow(1.0015, wheel.angleDelta.y))
        }
    }

    // Where a frame takes long, as without a graphics card, only what has moved is drawn again.
    property bool isSlow: false
    FrameAnimation {
        running: pulse.running
        onTriggered: if (currentFrame > 30 && smoothFrameTime > 0.06) page.isSlow = true
    }
    property real pulse: 0
    NumberAnimation {
        id: pulse
        target: page
        property: "pulse"
        from: 0
        to: 1
        duration: 3200
        loops: Animation.Infinite
        running: page.isMoving && !page.isSlow && App.globe.isShown && scene.status === Loader.Ready
    }

    Repeater {
        model: App.globe.labels

        Item {
            id: label
            required property string text
            required property bool isPlace
            required property bool isStorm
            required property string spoken
            required property real at_x
            required property real at_y
            required property bool isShown
            x: Math.round(at_x)
            y: Math.round(at_y)
            visible: isShown
            LayoutMirroring.enabled: false

            Sign {
                visible: label.isPlace
                x: -width / 2
                y: -height
                size: 24 * Theme.scale
                name: "place"
                ink: Theme.pin
            }
            Rectangle {
                visible: !label.isPlace && !label.isStorm
                x: -5
                y: -5
                width: 10
                height: 10
                radius: 5
                color: "transparent"
                border.width: 1.5
                border.color: Theme.cosmosInk
            }
            PlainText {
                x: label.isPlace || label.isStorm ? 12 : 9
                y: label.isPlace ? -22 : -height / 2
                width: Math.min(implicitWidth, 220)
                text: label.text
                elide: Text.ElideRight
                color: Theme.cosmosInk
                style: Text.Outline
                styleColor: Qt.alpha(Theme.cosmos, 0.85)
                font.pixelSize: Theme.small
                font.weight: Font.DemiBold
                Accessible.role: Accessible.StaticText
                Accessible.name: label.spoken
            }
        }
    }

    PlainText {
        anchors.horizontalCenter: parent.horizontalCenter
        y: parent.height - height - 2 * Theme.space
        width: Math.min(implicitWidth, parent.width - 4 * Theme.space)
        text: App.globe.status
        visible: text !== ""
        wrapMode: Text.Wrap
        horizontalAlignment: Text.AlignHCenter
        color: Theme.cosmosInk
        font.pixelSize: Theme.body
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }

    GlobeLegend {
        id: legend
        x: page.isWide ? 2 * Theme.space : Theme.space
        y: page.isWide ? 2 * Theme.space : parent.height - height - Theme.space
        width: page.panelWidth
        visible: page.isWide || page.isLegendOpen
        most: page.isWide ? page.height - 4 * Theme.space : page.height * 0.62
        onChosen: page.isLegendOpen = false
    }

    SatelliteCard {
        id: card
        x: page.isWide ? parent.width - width - 2 * Theme.space : Theme.space
        y: page.isWide ? 2 * Theme.space : parent.height - height - Theme.space
        width: page.panelWidth
        visible: App.globe.card.isShown && !(page.isLegendOpen && !page.isWide)
        onClosed: sky.forceActiveFocus()
    }

    Column {
        x: parent.width - width - 2 * Theme.space
        y: page.isWide ? parent.height - height - 2 * Theme.space : 2 * Theme.space
        spacing: Theme.space

        component Knob: PlainButton {
            ink: Theme.cosmosInk
            width: implicitHeight
        }
        Knob {
            visible: !page.isWide
            sign: page.isLegendOpen ? "cross" : "others"
            explanation: App.globe.words.legend
            onClicked: page.isLegendOpen = !page.isLegendOpen
        }
        Knob {
            sign: "plus"
            explanation: App.globe.words.closer
            onClicked: App.globe.zoom(1.25)
        }
        Knob {
            sign: "minus"
            explanation: App.globe.words.farther
            onClicked: App.globe.zoom(0.8)
        }
        Knob {
            sign: "place"
            visible: App.globe.hasPlace
            explanation: App.globe.words.home
            onClicked: App.globe.goHome()
        }
    }
}
