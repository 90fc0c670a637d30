// The editor of one rule: what it says stands below in words as one chooses, and can be tried.
import QtQuick
import QtQuick.Controls.Basic
import NimbaraPages

Rectangle {
    id: editor

    required property var notifications
    readonly property var words: notifications.words
    readonly property var draft: notifications.draft

    implicitHeight: all.height + 3 * Theme.space
    radius: Theme.radius
    color: "transparent"
    border.width: 1
    border.color: Theme.accent
    Component.onCompleted: name.forceActiveFocus()
    Keys.onEscapePressed: notifications.dropDraft()

    component Words: PlainText {
        width: parent ? parent.width : 0
        visible: text !== ""
        wrapMode: Text.Wrap
        horizontalAlignment: Text.AlignLeft
        color: Theme.text
        font.pixelSize: Theme.body
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }

    Column {
        id: all
        x: 2 * Theme.space
        y: 1.5 * Theme.space
        width: parent.width - 4 * Theme.space
        spacing: Theme.space / 2

        Words {
            text: editor.notifications.isNewRule ? editor.words.newRule : editor.words.editRule
            font.weight: Font.DemiBold
            Accessible.role: Accessible.Heading
        }
        SettingRow {
            width: parent.width
            title: editor.words.ruleTitle
            explanation: editor.words.ruleTitleHint
            stacked: true
            Field {
                id: name
                implicitWidth: all.width
                width: all.width
                title: editor.words.ruleTitle
                maximumLength: 200
                Component.onCompleted: text = editor.draft.title
                onTextEdited: editor.notifications.setTitle(text)
            }
        }
        SettingChoice {
            width: parent.width
            title: editor.words.ruleKind
            options: editor.notifications.kinds
            value: editor.draft.kind
            onChosen: kind => editor.notifications.setKind(kind)
        }
        SettingChoice {
            width: parent.width
            title: editor.words.ruleComparison
            options: editor.notifications.comparisons
            value: editor.draft.comparison
            onChosen: comparison => editor.notifications.setComparison(comparison)
        }
        SettingNumber {
            width: parent.width
            visible: editor.draft.hasThreshold
            title: editor.words.ruleThreshold
            value: editor.draft.threshold
            from: editor.draft.from
            to: editor.draft.to
            step: editor.draft.step
            decimals: editor.draft.decimals
            unit: editor.draft.unit
            onChanged: shown => editor.notifications.setThreshold(shown)
        }
        SettingChoice {
            width: parent.width
            visible: editor.draft.hasSpan
            title: editor.words.ruleSpan
            options: editor.notifications.spans
            value: editor.draft.span
            onChosen: hours => editor.notifications.setSpan(hours)
        }
        SettingChoice {
            width: parent.width
            title: editor.words.ruleHour
            options: editor.notifications.checkHours
            value: editor.draft.hour
            onChosen: hour => editor.notifications.setCheckHour(hour)
        }
        SettingChoice {
            width: parent.width
            title: editor.words.rulePlace
            options: editor.notifications.rulePlaces
            value: editor.draft.place
            onChosen: place => editor.notifications.setPlace(place)
        }
        SettingRow {
            width: parent.width
            title: editor.words.ruleDays
            stacked: true
            Item {
                implicitWidth: all.width
                width: all.width
                height: week.height
                Flow {
                    id: week
                    width: parent.width
                    spacing: Theme.space / 2
                    Repeater {
                        model: editor.notifications.days
                        AbstractButton {
                            id: day
                            required property string name
                            required property string dayName
                            required property bool isOn
                            implicitWidth: Math.max(44 * Theme.scale, label.implicitWidth + 16)
                            implicitHeight: 36 * Theme.scale
                            onClicked: editor.notifications.setDay(name, !isOn)
                            Keys.onReturnPressed: clicked()
                            Accessible.role: Accessible.CheckBox
                            Accessible.name: dayName
                            Accessible.checked: isOn
                            background: Rectangle {
                                radius: height / 2
                                color: day.isOn ? Theme.accent : Theme.raised
                                border.width: day.visualFocus ? 2 : 0
                                border.color: Theme.text
                            }
                            contentItem: PlainText {
                                id: label
                                text: day.dayName
                                horizontalAlignment: Text.AlignHCenter
                                verticalAlignment: Text.AlignVCenter
                                color: day.isOn ? Theme.accentText : Theme.muted
                                font.pixelSize: Theme.small
                                font.weight: Font.DemiBold
                            }
                        }
                    }
                }
            }
        }
        Rectangle {
            width: parent.width
            height: said.height + 2 * Theme.space
            radius: 10
            color: Theme.raised
            Column {
                id: said
                x: 1.5 * Theme.space
                y: Theme.space
                width: parent.width - 3 * Theme.space
                spacing: 4
                Words { text: editor.draft.description; font.weight: Font.DemiBold }
                Words { text: editor.draft.schedule; color: Theme.muted; font.pixelSize: Theme.small }
                Words { text: editor.draft.fault; color: Theme.warm; font.pixelSize: Theme.small }
                Words {
                    text: editor.notifications.isTrying ? editor.words.trying : editor.notifications.trial
                    color: editor.notifications.trialRings ? Theme.accent : Theme.text
                    font.pixelSize: Theme.small
                }
            }
        }
        Flow {
            width: parent.width
            topPadding: Theme.space
            spacing: Theme.space
            PlainButton {
                width: Math.min(implicitWidth, parent.width)
                text: editor.words.tryRule
                enabled: !editor.notifications.isTrying
                onClicked: editor.notifications.tryDraft()
            }
            PlainButton {
                text: editor.words.save
                enabled: editor.draft.fault === ""
                onClicked: editor.notifications.saveDraft()
            }
            PlainButton {
                text: editor.words.cancel
                ink: Theme.muted
                onClicked: editor.notifications.dropDraft()
            }
        }
    }
}
