// The settings of a group, each as the row that its kind asks for.
import QtQuick
import NimbaraPages
import NimbaraItems

Column {
    id: rows

    property alias model: repeater.model

    Repeater {
        id: repeater

        Column {
            id: entry

            required property string key
            required property string kind
            required property string title
            required property string explanation
            required property string value
            required property var values
            required property var labels
            required property bool isOn
            required property bool isSet
            required property string problem

            function ask(text) {
                App.settings.change(key, text);
            }

            width: rows.width
            bottomPadding: problem !== "" || (kind === "secret" && isSet) ? 1.5 * Theme.space : 0

            Loader {
                width: entry.width
                sourceComponent: entry.kind === "choice" ? choice : entry.kind === "switch" ? toggle : line
            }
            PlainText {
                width: parent.width
                visible: text !== ""
                text: entry.problem
                horizontalAlignment: Text.AlignLeft
                wrapMode: Text.Wrap
                color: Theme.danger
                font.pixelSize: Theme.small
                Accessible.role: Accessible.AlertMessage
                Accessible.name: text
            }
            PlainButton {
                anchors.left: parent.left
                visible: entry.kind === "secret" && entry.isSet
                text: App.settings.words.forget
                explanation: text + ": " + entry.title
                onClicked: entry.ask("")
            }

            Component {
                id: choice
                SettingChoice {
                    title: entry.title
                    explanation: entry.explanation
                    options: entry.values.map((value, i) => ({ value: value, text: entry.labels[i] }))
                    value: entry.value
                    onChosen: value => entry.ask(value)
                }
            }
            Component {
                id: toggle
                SettingSwitch {
                    title: entry.title
                    explanation: entry.explanation
                    checked: entry.isOn
                    onSwitched: on => entry.ask(on ? "true" : "false")
                }
            }
            Component {
                id: line
                SettingText {
                    title: entry.title
                    explanation: entry.explanation
                    secret: entry.kind === "secret"
                    value: entry.value
                    placeholder: secret && entry.isSet ? App.settings.words.kept : ""
                    onChanged: value => entry.ask(value)
                }
            }
        }
    }
}
