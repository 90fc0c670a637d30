// A saved place with its small forecast. A bar at its side shows that it is the selected one, a frame where the keys
// are.
import QtQuick
import QtQuick.Controls.Basic
import NimbaraPages
import NimbaraItems

Item {
    id: place

    required property int index
    required property string placeId
    required property string name
    required property string area
    required property bool isSelected
    required property string temperature
    required property string range
    required property string sky
    required property bool isDay
    required property string age
    required property string localTime
    required property string mark
    required property string markText
    required property string warnings
    required property string warningsState
    required property string sentence
    required property string notifications

    readonly property bool isTight: content.width < 340 * Theme.scale
    readonly property bool isDragged: grip.active
    property real shift: 0  // to make room for one that is dragged
    property bool moves: false
    property bool isRenaming: false

    signal chosen
    signal dragged(real distance)
    signal dropped

    height: content.height + 2.5 * Theme.space
    z: isDragged ? 1 : 0
    transform: Translate {
        y: place.isDragged ? grip.activeTranslation.y : place.shift
        Behavior on y {
            enabled: place.moves && !place.isDragged
            NumberAnimation { duration: Theme.quick }
        }
    }

    function move(by) {
        App.movePlace(placeId, index + 1 + by);
    }
    function rename() {
        isRenaming = true;
        (naming.item as Field).text = name;
        (naming.item as Field).selectAll();
        (naming.item as Field).forceActiveFocus();
    }
    function endRenaming(isWanted) {
        if (!isRenaming)
            return;
        const text = (naming.item as Field).text;
        isRenaming = false;
        choose.forceActiveFocus(Qt.TabFocusReason);
        if (isWanted)
            App.renamePlace(placeId, text);
    }

    Rectangle {
        anchors.fill: parent
        radius: Theme.radius
        color: Theme.card
        border.width: choose.visualFocus ? 3 : 1
        border.color: choose.visualFocus ? Theme.accent : place.isDragged ? Theme.muted : Theme.outline
        Rectangle {
            visible: place.isSelected
            anchors.left: parent.left
            anchors.leftMargin: 5
            anchors.verticalCenter: parent.verticalCenter
            width: 5
            height: parent.height - 28
            radius: 2.5
            color: Theme.accent
        }
    }

    Pressable {
        id: choose
        anchors.fill: parent
        onClicked: {
            App.selectPlace(place.placeId);
            place.chosen();
        }
        Keys.onDeletePressed: App.removePlace(place.placeId)
        Keys.onPressed: event => {
            if (event.key === Qt.Key_F2)
                place.rename();
            else if (!(event.modifiers & Qt.ControlModifier))
                return;
            else if (event.key === Qt.Key_Up && place.index > 0)
                place.move(-1);
            else if (event.key === Qt.Key_Down && place.index < App.places.count - 1)
                place.move(1);
            else
                return;
            event.accepted = true;
        }
        Accessible.name: place.sentence + (place.isSelected ? ", " + App.words.selected : "")
    }

    Column {
        id: content
        x: 2 * Theme.space
        y: 1.25 * Theme.space
        width: parent.width - 4 * Theme.space
        spacing: 4

        Item {
            id: line
            // Of what stands beside the names, or below them: places, for an anchor would keep what it was before.
            readonly property real warmthAt: place.isTight ? picture.width + Theme.space : width - buttons.width - warmth.width - 2 * Theme.space
            readonly property real pictureAt: place.isTight ? 0 : warmthAt - picture.width - Theme.space
            width: parent.width
            height: place.isTight ? names.height + Math.max(picture.height, buttons.height) + 4 : Math.max(names.height, picture.height, buttons.height)

            Column {
                id: names
                anchors.left: parent.left
                y: place.isTight ? 0 : (parent.height - height) / 2
                width: place.isTight ? parent.width : parent.width - buttons.width - warmth.width - picture.width - 5 * Theme.space
                spacing: 2

                Row {
                    width: parent.width
                    spacing: Theme.space
                    PlainText {
                        id: title
                        visible: !place.isRenaming
                        width: Math.min(implicitWidth, parent.width - (badge.visible ? badge.width + parent.spacing : 0))
                        text: place.name
                        wrapMode: Text.Wrap
                        maximumLineCount: 3
                        elide: Text.ElideRight
                        horizontalAlignment: Text.AlignLeft
                        color: Theme.text
                        font.pixelSize: Theme.title
                        font.weight: Font.DemiBold
                    }
                    PlaceMark {
                        id: badge
                        visible: place.mark !== "" && !place.isRenaming
                        anchors.verticalCenter: title.verticalCenter
                        level: place.mark
                    }
                    Loader {
                        id: naming
                        active: place.isRenaming
                        visible: active
                        width: parent.width
                        sourceComponent: Field {
                            title: App.words.rename + ": " + place.name
                            onAccepted: place.endRenaming(true)
                            onActiveFocusChanged: if (!activeFocus) place.endRenaming(true)
                            Keys.onEscapePressed: place.endRenaming(false)
                        }
                    }
                }
                PlainText {
                    width: parent.width
                    text: Theme.joined([place.area, place.localTime], "  ·  ")
                    wrapMode: Text.Wrap
                    maximumLineCount: 2
                    elide: Text.ElideRight
                    horizontalAlignment: Text.AlignLeft
                    color: Theme.muted
                    font.pixelSize: Theme.small
                }
            }
            Glyph {
                id: picture
                x: LayoutMirroring.enabled ? line.width - width - line.pictureAt : line.pictureAt
                y: buttons.y + (buttons.height - height) / 2
                size: 42 * Theme.scale
                sky: place.sky
                isDay: place.isDay
                overDark: Theme.dark
            }
            PlainText {
                id: warmth
                x: LayoutMirroring.enabled ? line.width - width - line.warmthAt : line.warmthAt
                y: buttons.y + (buttons.height - height) / 2
                text: place.temperature
                color: Theme.text
                font.pixelSize: Theme.headline
                font.weight: Font.Light
            }
            Row {
                id: buttons
                anchors.right: parent.right
                y: place.isTight ? names.height + 4 : (parent.height - height) / 2
                spacing: 4
                PlainButton {
                    sign: "pencil"
                    explanation: App.words.rename + ": " + place.name
                    onClicked: place.rename()
                }
                PlainButton {
                    sign: "cross"
                    explanation: App.words.remove + ": " + place.name
                    onClicked: App.removePlace(place.placeId)
                }
                PlainButton {
                    id: handle
                    visible: App.places.count > 1
                    sign: "grip"
                    explanation: App.words.move + ": " + place.name
                    Accessible.description: App.words.moveHint
                    Keys.onUpPressed: if (place.index > 0) place.move(-1)
                    Keys.onDownPressed: if (place.index < App.places.count - 1) place.move(1)
                    onClicked: place.move(place.index < App.places.count - 1 ? 1 : -place.index)
                    HoverHandler { cursorShape: Qt.OpenHandCursor }
                    DragHandler {
                        id: grip
                        target: null
                        xAxis.enabled: false
                        dragThreshold: 4
                        cursorShape: Qt.ClosedHandCursor
                        grabPermissions: PointerHandler.CanTakeOverFromAnything
                        onActiveTranslationChanged: if (active) place.dragged(activeTranslation.y)
                        onActiveChanged: if (!active) place.dropped()
                    }
                }
            }
        }
        PlainText {
            visible: text !== ""
            width: parent.width
            text: place.markText && place.mark !== "unchecked" ? Theme.joined([place.markText, place.warnings], "  ·  ") : place.warnings
            wrapMode: Text.Wrap
            maximumLineCount: 3
            elide: Text.ElideRight
            horizontalAlignment: Text.AlignLeft
            color: place.mark === "" ? Theme.muted : Theme.text
            font.pixelSize: Theme.tiny
        }
        SourcesLink {
            visible: place.warningsState === "unchecked" || place.warningsState === "uncovered" || place.warningsState === "unplaced"
            explanation: text + ": " + place.name
        }
        Flow {
            width: parent.width
            topPadding: 4
            spacing: Theme.space
            Item {
                width: bell.width
                height: choice.height
                Sign {
                    id: bell
                    anchors.verticalCenter: parent.verticalCenter
                    size: 18 * Theme.scale
                    name: place.notifications === "nothing" ? "silence" : "bell"
                    ink: Theme.muted
                }
            }
            Choice {
                id: choice
                model: [
                    {
                        "value": "everything",
                        "text": App.words.notifyEverything
                    },
                    {
                        "value": "severe",
                        "text": App.words.notifySevere
                    },
                    {
                        "value": "official",
                        "text": App.words.notifyOfficial
                    },
                    {
                        "value": "nothing",
                        "text": App.words.notifyNothing
                    }
                ]
                value: place.notifications
                title: App.words.notifications + ", " + place.name
                onChosen: value => App.chooseNotifications(place.placeId, value)
            }
            PlainText {
                height: choice.height
                text: Theme.joined([place.range, place.age], "  ·  ")
                verticalAlignment: Text.AlignVCenter
                horizontalAlignment: Text.AlignLeft
                color: Theme.muted
                font.pixelSize: Theme.tiny
            }
        }
    }
}
