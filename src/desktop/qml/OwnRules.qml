// The user's own rules, and the editor of one of them.
import QtQuick
import NimbaraPages

Card {
    id: card

    required property var notifications
    readonly property var words: notifications.words

    title: words.rules ?? ""

    Column {
        width: parent.width
        spacing: 1.5 * Theme.space

        PlainText {
            width: parent.width
            text: card.notifications.rules.count > 0 ? card.words.rulesHint ?? "" : card.words.noRules ?? ""
            wrapMode: Text.Wrap
            horizontalAlignment: Text.AlignLeft
            color: Theme.muted
            font.pixelSize: Theme.small
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        Repeater {
            model: card.notifications.rules
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
                    onSwitched: on => card.notifications.enableRule(rule.id, on)
                }
                Flow {
                    width: parent.width
                    spacing: Theme.space
                    PlainButton {
                        text: card.words.editRule ?? ""
                        explanation: text + ": " + rule.title
                        onClicked: card.notifications.editRule(rule.id)
                    }
                    PlainButton {
                        text: card.words.removeRule ?? ""
                        explanation: text + ": " + rule.title
                        ink: Theme.warm
                        onClicked: card.notifications.removeRule(rule.id)
                    }
                }
            }
        }
        PlainButton {
            anchors.left: parent.left
            visible: !card.notifications.isEditing
            text: card.words.addRule ?? ""
            onClicked: card.notifications.addRule()
        }
        Loader {
            width: parent.width
            height: item ? item.implicitHeight : 0
            active: card.notifications.isEditing
            visible: active
            sourceComponent: RuleEditor { notifications: card.notifications }
        }
    }
}
