// The editor of one rule: what it says stands below in words as one chooses, and can be tried.
import QtQuick
import QtQuick.Controls.Basic
import NimbaraPages
import NimbaraItems

Rectangle {
    id: editor


    implicitHeight: all.height + 3 * Theme.space
    radius: Theme.radius
    color: "transparent"
    border.width: 1
    border.color: Theme.accent
    Component.onCompleted: name.forceActiveFocus()
    Keys.onEscapePressed: App.notifications.dropDraft()

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
            text: App.notifications.isNewRule ? App.notifications.words.newRule : App.notifications.words.editRule
            font.weight: Font.DemiBold
            Accessible.role: Accessible.Heading
        }
        SettingRow {
            width: parent.width
            title: App.notifications.words.ruleTitle
            explanation: App.notifications.words.ruleTitleHint
            stacked: true
            Field {
                id: name
                implicitWidth: all.width
                width: all.width
                title: App.notifications.words.ruleTitle
                maximumLength: 200
                // Typing breaks a binding of the text, and another rule may be opened in the same editor.
                readonly property string draftTitle: App.notifications.draft.title
                onDraftTitleChanged: if (text !== draftTitle) text = draftTitle
                onTextEdited: App.notifications.setTitle(text)
            }
        }
        SettingChoice {
            width: parent.width
            title: App.notifications.words.ruleKind
            options: App.notifications.kinds
            value: App.notifications.draft.kind
            onChosen: kind => App.notifications.setKind(kind)
        }
        SettingChoice {
            width: parent.width
            title: App.notifications.words.ruleComparison
            options: App.notifications.comparisons
            value: App.notifications.draft.comparison
            onChosen: comparison => App.notifications.setComparison(comparison)
        }
        SettingNumber {
            width: parent.width
            visible: App.notifications.draft.hasThreshold
            title: App.notifications.words.ruleThreshold
            value: App.notifications.draft.threshold
            from: App.notifications.draft.from
            to: App.notifications.draft.to
            step: App.notifications.draft.step
            decimals: App.notifications.draft.decimals
            unit: App.notifications.draft.unit
            onChanged: shown => App.notifications.setThreshold(shown)
        }
        SettingChoice {
            width: parent.width
            visible: App.notifications.draft.hasSpan
            title: App.notifications.words.ruleSpan
            options: App.notifications.spans
            value: App.notifications.draft.span
            onChosen: hours => App.notifications.setSpan(hours)
        }
        SettingChoice {
            width: parent.width
            visible: App.notifications.draft.hasHour
            title: App.notifications.words.ruleHour
            options: App.notifications.checkHours
            value: App.notifications.draft.hour
            onChosen: hour => App.notifications.setCheckHour(hour)
        }
        SettingChoice {
            width: parent.width
            title: App.notifications.words.rulePlace
            options: App.notifications.rulePlaces
            value: App.notifications.draft.place
            onChosen: place => App.notifications.setPlace(place)
        }
        SettingRow {
            width: parent.width
            title: App.notifications.words.ruleDays
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
                        model: App.notifications.days
                        Pressable {
                            id: day
                            required property string name
                            required property string dayName
                            required property bool isOn
                            implicitWidth: Math.max(44 * Theme.scale, label.implicitWidth + 16)
                            implicitHeight: 36 * Theme.scale
                            onClicked: App.notifications.setDay(name, !isOn)
                            spokenRole: Accessible.CheckBox
                            isCheckable: true
                            isChecked: isOn
                            Accessible.name: dayName
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
                Words { text: App.notifications.draft.description; font.weight: Font.DemiBold }
                Words { text: App.notifications.draft.schedule; color: Theme.muted; font.pixelSize: Theme.small }
                Words { text: App.notifications.draft.fault; color: Theme.warm; font.pixelSize: Theme.small }
                Words {
                    text: App.notifications.isTrying ? App.notifications.words.trying : App.notifications.trial
                    color: App.notifications.trialRings ? Theme.accent : Theme.text
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
                text: App.notifications.words.tryRule
                enabled: !App.notifications.isTrying
                onClicked: App.notifications.tryDraft()
            }
            PlainButton {
                text: App.notifications.words.save
                enabled: App.notifications.draft.fault === ""
                onClicked: App.notifications.saveDraft()
            }
            PlainButton {
                text: App.notifications.words.cancel
                ink: Theme.muted
                onClicked: App.notifications.dropDraft()
            }
        }
    }
}
