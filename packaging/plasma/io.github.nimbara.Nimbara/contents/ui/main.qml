// The weather of the selected place in a panel, as the service in the session tells it. Asks once at the start and
// again when the service says that something has changed; decides nothing itself.
import QtQuick
import QtQuick.Layouts
import org.kde.kirigami as Kirigami
import org.kde.plasma.components as PlasmaComponents
import org.kde.plasma.plasmoid
import org.kde.plasma.workspace.dbus as DBus

PlasmoidItem {
    id: root

    readonly property string service: "io.github.nimbara.Nimbara.Service"
    readonly property string objectPath: "/io/github/nimbara/Nimbara/Service"
    property var current: ({})
    property var hours: []
    property var warnings: []
    property string nowcast: ""

    readonly property bool hasWeather: text("temperature") !== ""
    readonly property int warningCount: Number(String(current.warningCount ?? 0))

    // The bus hands texts and numbers over in wrappers of their own.
    function text(key) {
        return current[key] === undefined ? "" : String(current[key]);
    }

    function call(member, texts, answered) {
        DBus.SessionBus.asyncCall({
            "service": service,
            "path": objectPath,
            "iface": service,
            "member": member,
            "arguments": texts,
            "signature": texts.length === 0 ? "" : "(" + "s".repeat(texts.length) + ")"
        }, answered, () => {});
    }

    function look() {
        call("Current", [""], reply => root.current = reply.value ?? {});
        call("Hours", [""], reply => root.hours = reply.value ?? []);
        call("Warnings", [""], reply => root.warnings = reply.values[1] ?? []);
        call("Nowcast", [""], reply => root.nowcast = String((reply.value ?? {}).sentence ?? ""));
    }

    function open() {
        call("Open", ["", ""], () => {});
    }

    Component.onCompleted: look()

    Plasmoid.icon: text("icon") || "io.github.nimbara.Nimbara"
    toolTipMainText: text("name")
    toolTipSubText: [text("summary"), text("warningsText"), nowcast].filter(line => line !== "").join("\n")

    DBus.SignalWatcher {
        busType: DBus.BusType.Session
        service: root.service
        path: root.objectPath
        iface: root.service

        function dbusChanged() {
            root.look();
        }
    }

    DBus.DBusServiceWatcher {
        busType: DBus.BusType.Session
        watchedService: root.service
        onRegisteredChanged: {
            if (registered)
                root.look();
        }
    }

    compactRepresentation: MouseArea {
        Accessible.role: Accessible.Button
        Accessible.name: root.toolTipMainText + ", " + root.toolTipSubText
        Layout.minimumWidth: row.implicitWidth
        onClicked: root.expanded = !root.expanded

        RowLayout {
            id: row
            anchors.fill: parent
            spacing: Kirigami.Units.smallSpacing

            Kirigami.Icon {
                Layout.fillHeight: true
                Layout.preferredWidth: height
                source: Plasmoid.icon
            }
            PlasmaComponents.Label {
                text: root.text("temperature")
                visible: root.hasWeather
            }
            Kirigami.Icon {
                Layout.preferredWidth: Kirigami.Units.iconSizes.small
                Layout.preferredHeight: Kirigami.Units.iconSizes.small
                source: "data-warning"
                visible: root.warningCount > 0
            }
        }
    }

    fullRepresentation: ColumnLayout {
        Layout.minimumWidth: Kirigami.Units.gridUnit * 18
        Layout.minimumHeight: Kirigami.Units.gridUnit * 14
        spacing: Kirigami.Units.smallSpacing

        Kirigami.Heading {
            Layout.fillWidth: true
            elide: Text.ElideRight
            text: root.text("name")
            textFormat: Text.PlainText
        }
        PlasmaComponents.Label {
            Layout.fillWidth: true
            text: [root.text("temperature"), root.text("conditionText"), root.text("updatedText")].filter(part => part !== "").join(" · ")
            textFormat: Text.PlainText
            wrapMode: Text.Wrap
        }
        PlasmaComponents.Label {
            Layout.fillWidth: true
            text: root.nowcast
            textFormat: Text.PlainText
            visible: text !== ""
            wrapMode: Text.Wrap
        }
        PlasmaComponents.Label {
            Layout.fillWidth: true
            text: root.text("warningsText")
            textFormat: Text.PlainText
            wrapMode: Text.Wrap
        }
        Repeater {
            model: root.warnings

            RowLayout {
                required property var modelData

                Kirigami.Icon {
                    Layout.preferredWidth: Kirigami.Units.iconSizes.small
                    Layout.preferredHeight: Kirigami.Units.iconSizes.small
                    source: String(parent.modelData.severity) === "critical" ? "data-error" : "data-warning"
                }
                PlasmaComponents.Label {
                    Layout.fillWidth: true
                    text: String(parent.modelData.title)
                    textFormat: Text.PlainText
                    wrapMode: Text.Wrap
                }
            }
        }
        ListView {
            Layout.fillWidth: true
            Layout.preferredHeight: Kirigami.Units.gridUnit * 5
            clip: true
            model: root.hours
            orientation: ListView.Horizontal

            delegate: ColumnLayout {
                required property var modelData
                readonly property string chance: modelData.chanceOfRain === undefined ? "" : String(modelData.chanceOfRain) + " %"

                Accessible.role: Accessible.StaticText
                Accessible.name: [modelData.timeText, modelData.conditionText, modelData.temperature, chance].map(String).join(", ")
                width: Kirigami.Units.gridUnit * 3

                PlasmaComponents.Label {
                    Layout.alignment: Qt.AlignHCenter
                    text: String(parent.modelData.timeText)
                }
                Kirigami.Icon {
                    Layout.alignment: Qt.AlignHCenter
                    source: String(parent.modelData.icon)
                }
                PlasmaComponents.Label {
                    Layout.alignment: Qt.AlignHCenter
                    text: String(parent.modelData.temperature)
                }
                PlasmaComponents.Label {
                    Layout.alignment: Qt.AlignHCenter
                    font: Kirigami.Theme.smallFont
                    text: parent.chance
                }
            }
        }
        PlasmaComponents.Button {
            Layout.alignment: Qt.AlignRight
            icon.name: "io.github.nimbara.Nimbara"
            text: "Nimbara"
            onClicked: root.open()
        }
    }
}
