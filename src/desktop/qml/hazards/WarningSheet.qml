// A warning with all there is to read of it: whom it concerns and when, where it holds, the issuer's words, what to
// do. Lies over the page; a small window is filled by it.
import QtQuick
import QtQuick.Templates as T
import NimbaraItems
import NimbaraPages

T.Popup {
    id: sheet

    readonly property bool fills: parent !== null && (parent.width < 720 || parent.height < 560)
    readonly property real margin: fills ? 0 : 4 * Theme.space
    readonly property real most: parent ? parent.height - 2 * margin : 0
    readonly property bool isWide: width >= 640 * Theme.scale
    readonly property bool hasMap: !map.isEmpty

    parent: T.Overlay.overlay
    width: parent ? Math.min(parent.width - 2 * margin, Math.max(760, 760 * Theme.scale)) : 0
    height: fills ? most : Math.min(most, head.height + body.contentHeight + Theme.space)
    x: parent ? Math.round((parent.width - width) / 2) : 0
    y: parent ? Math.round((parent.height - height) / 2) : 0
    modal: true
    focus: true
    padding: 0
    onOpened: {
        body.contentY = 0;
        close.forceActiveFocus();
    }
    T.Overlay.modal: Rectangle { color: Qt.rgba(0, 0, 0, 0.45) }
    enter: Transition { NumberAnimation { property: "opacity"; from: 0; to: 1; duration: Theme.quick } }

    background: Rectangle {
        radius: sheet.fills ? 0 : Theme.radius
        color: Theme.card
        border.width: sheet.fills ? 0 : 1
        border.color: Theme.outline
    }

    component Words: PlainText {
        visible: text !== ""
        wrapMode: Text.Wrap
        horizontalAlignment: Text.AlignLeft
        color: Theme.text
        font.pixelSize: Theme.body
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }

    // What it is called and what it says, one below the other.
    component Fact: Column {
        id: fact
        property string name
        property string value
        width: parent ? parent.width : 0
        visible: value !== ""
        spacing: 2
        PlainText {
            width: parent.width
            text: fact.name
            horizontalAlignment: Text.AlignLeft
            elide: Text.ElideRight
            color: Theme.muted
            font.pixelSize: Theme.tiny
            font.weight: Font.DemiBold
            Accessible.ignored: true
        }
        Words {
            width: parent.width
            text: fact.value
            Accessible.name: fact.name + ": " + fact.value
        }
    }

    contentItem: FocusScope {
        Keys.onDownPressed: body.move(60)
        Keys.onUpPressed: body.move(-60)
        Keys.onPressed: event => {
            if (event.key === Qt.Key_PageDown || event.key === Qt.Key_Space)
                body.move(0.9 * body.height);
            else if (event.key === Qt.Key_PageUp)
                body.move(-0.9 * body.height);
            else
                return;
            event.accepted = true;
        }

        Rectangle {
            id: head
            width: parent.width
            height: Math.max(titles.height, buttons.height) + 3 * Theme.space
            radius: sheet.fills ? 0 : Theme.radius
            color: Theme.alertColour(App.warning.level ?? "info")

            // Square below, where the text begins.
            Rectangle {
                anchors.bottom: parent.bottom
                width: parent.width
                height: parent.radius
                color: parent.color
            }
            Column {
                id: titles
                x: LayoutMirroring.enabled ? parent.width - width - 3 * Theme.space : 3 * Theme.space
                y: (parent.height - height) / 2
                width: parent.width - buttons.width - 6 * Theme.space
                spacing: 2
                Words {
                    width: parent.width
                    text: Theme.joined([App.warning.severity, App.warning.position], "  ·  ")
                    font.pixelSize: Theme.small
                    font.weight: Font.DemiBold
                }
                Words {
                    width: parent.width
                    text: App.warning.title ?? ""
                    font.pixelSize: sheet.isWide ? Math.round(1.35 * Theme.title) : Theme.title
                    font.weight: Font.DemiBold
                    Accessible.role: Accessible.Heading
                }
            }
            Row {
                id: buttons
                x: LayoutMirroring.enabled ? 2 * Theme.space : parent.width - width - 2 * Theme.space
                y: (parent.height - height) / 2
                spacing: Theme.space
                PlainButton {
                    visible: App.warning.position !== ""
                    ink: Theme.text
                    sign: LayoutMirroring.enabled ? "forth" : "back"
                    explanation: App.words.warningPrevious + (App.warning.position ? ", " + App.warning.position : "")
                    enabled: (App.warning.previous ?? "") !== ""
                    onClicked: App.openAlert = App.warning.previous
                }
                PlainButton {
                    visible: App.warning.position !== ""
                    ink: Theme.text
                    sign: LayoutMirroring.enabled ? "back" : "forth"
                    explanation: App.words.warningNext + (App.warning.position ? ", " + App.warning.position : "")
                    enabled: (App.warning.next ?? "") !== ""
                    onClicked: App.openAlert = App.warning.next
                }
                PlainButton {
                    id: close
                    ink: Theme.text
                    sign: "cross"
                    explanation: App.words.close
                    onClicked: sheet.close()
                }
            }
        }

        Flickable {
            id: body

            function move(by) {
                contentY = Math.max(0, Math.min(contentHeight - height, contentY + by));
            }

            y: head.height
            width: parent.width
            height: parent.height - y - (sheet.fills ? 0 : Theme.space)
            contentHeight: content.height + 5 * Theme.space
            clip: true
            boundsBehavior: Flickable.StopAtBounds
            T.ScrollBar.vertical: ThinBar {}

            Connections {
                target: App
                function onOpenAlertChanged() { body.contentY = Math.min(body.contentY, Math.max(0, body.contentHeight - body.height)) }
            }

            Column {
                id: content
                x: 3 * Theme.space
                y: 2.5 * Theme.space
                width: parent.width - 6 * Theme.space
                spacing: 2.5 * Theme.space

                Item {
                    width: parent.width
                    height: sheet.isWide ? Math.max(facts.height, picture.height)
                                         : facts.height + (picture.visible ? picture.height + 2 * Theme.space : 0)
                    Column {
                        id: facts
                        anchors.left: parent.left
                        width: sheet.isWide && sheet.hasMap ? parent.width - picture.width - 3 * Theme.space : parent.width
                        spacing: 1.5 * Theme.space
                        Fact { name: App.words.warningArea; value: App.warning.area ?? "" }
                        Words {
                            width: parent.width
                            text: App.warning.near ?? ""
                            color: Theme.muted
                            font.pixelSize: Theme.small
                        }
                        Fact { name: App.words.warningWhen; value: App.warning.when ?? "" }
                        Fact { name: App.words.warningIssued; value: App.warning.issued ?? "" }
                        Fact { name: App.words.warningSource; value: App.warning.issuer ?? "" }
                        Words {
                            width: parent.width
                            visible: !sheet.hasMap && (App.warning.isOfficial ?? false)
                            text: App.words.warningNoMap
                            color: Theme.muted
                            font.pixelSize: Theme.small
                        }
                    }
                    Rectangle {
                        id: picture
                        visible: sheet.hasMap
                        anchors.right: parent.right
                        y: sheet.isWide ? 0 : facts.height + 2 * Theme.space
                        width: sheet.isWide ? Math.round(parent.width * 0.48) : parent.width
                        height: visible ? Math.round(width * (sheet.isWide ? 0.72 : 0.6)) : 0
                        color: Theme.sea
                        border.width: 1
                        border.color: Theme.outline
                        Accessible.role: Accessible.Graphic
                        Accessible.name: App.words.warningMap
                        WarningMapItem {
                            id: map
                            anchors.fill: parent
                            anchors.margins: 1
                            model: App
                            sea: Theme.sea
                            land: Theme.land
                            border: Theme.border
                            area: Theme.alertInk(App.warning.level ?? "info")
                            mark: Theme.accent
                            ink: Theme.text
                            name: App.now.place ?? ""
                            letters: Theme.tiny
                        }
                    }
                }
                Words {
                    width: parent.width
                    text: App.warning.content ?? ""
                    lineHeight: 1.2
                }
                Words {
                    width: parent.width
                    text: App.warning.note ?? ""
                    color: Theme.muted
                    font.pixelSize: Theme.small
                }
                Rectangle {
                    width: parent.width
                    visible: App.warning.instruction !== ""
                    height: advice.height + 3 * Theme.space
                    radius: 12
                    color: Theme.raised
                    Column {
                        id: advice
                        x: 2 * Theme.space
                        y: 1.5 * Theme.space
                        width: parent.width - 4 * Theme.space
                        spacing: 4
                        Words {
                            width: parent.width
                            text: App.words.warningInstruction
                            font.pixelSize: Theme.small
                            font.weight: Font.DemiBold
                            Accessible.role: Accessible.Heading
                        }
                        Words {
                            width: parent.width
                            text: App.warning.instruction ?? ""
                            lineHeight: 1.2
                        }
                    }
                }
                Flow {
                    width: parent.width
                    spacing: Theme.space
                    PlainButton {
                        visible: (App.warning.link ?? "") !== ""
                        text: App.words.warningLink
                        onClicked: Qt.openUrlExternally(App.warning.link)
                    }
                    PlainButton {
                        visible: text !== ""
                        width: Math.min(implicitWidth, parent.width)
                        text: App.warning.mute ?? ""
                        onClicked: App.warning.mutes ? App.notifications.unmute(App.warning.mutes)
                                                     : App.notifications.mute(App.warning.kind, "tomorrow")
                    }
                }
            }
        }
    }
}
