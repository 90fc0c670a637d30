// The user's own rules, and the editor of one of them.
import QtQuick
import NimbaraPages
import NimbaraItems

Card {
    id: card


    title: App.notifications.words.rules

    Column {
        width: parent.width
        spacing: 1.5 * Theme.space

        PlainText {
            width: parent.width
            text: App.notifications.rules.count > 0 ? App.notifications.words.rulesHint : App.notifications.words.noRules
            wrapMode: Text.Wrap
            horizontalAlignment: Text.AlignLeft
            color: Theme.muted
            font.pixelSize: Theme.small
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        Repeater {
            model: App.notifications.rules
            Column {
                id: rule
                required property string id
                required property string title
                required property string description
                required property string schedule
                required property bool isOn
                required property bool isOrphan
                width: parent.width
                SettingSwitch {
                    width: parent.width
                    title: rule.title
                    explanation: rule.description + "\n" + rule.schedule
                    enabled: rule.isOn || !rule.isOrphan
                    checked: rule.isOn
                    onSwitched: on => App.notifications.enableRule(rule.id, on)
                }
                Flow {
                    width: parent.width
                    spacing: Theme.space
                    PlainButton {
                        text: App.notifications.words.editRule
                        explanation: text + ": " + rule.title
                        onClicked: App.notifications.editRule(rule.id)
                    }
                    PlainButton {
                        text: App.notifications.words.removeRule
                        explanation: text + ": " + rule.title
                        ink: Theme.warm
                        onClicked: App.notifications.removeRule(rule.id)
                    }
                }
            }
        }
        PlainButton {
            anchors.left: parent.left
            visible: !App.notifications.isEditing
            text: App.notifications.words.addRule
            onClicked: App.notifications.addRule()
        }
        Loader {
            width: parent.width
            height: item ? (item as Item).implicitHeight : 0
            active: App.notifications.isEditing
            visible: active
            sourceComponent: RuleEditor {}
        }
    }
}
