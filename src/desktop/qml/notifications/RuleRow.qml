// A setting of notifications with the control that suits it.
import QtQuick
import NimbaraPages
import NimbaraItems

Item {
    id: row

    required property string key
    required property string control
    required property string title
    required property string explanation
    required property bool isOn
    required property bool isDetail
    required property bool isEnabled
    required property double value
    required property double from
    required property double to
    required property double step
    required property double decimals
    required property string unit
    required property string choice

    readonly property real indent: isDetail ? 2 * Theme.space : 0

    // What belongs to a rule that is off says nothing.
    visible: isEnabled
    height: visible ? body.height : 0

    Loader {
        id: body
        anchors.right: parent.right
        width: parent.width - row.indent
        height: item ? (item as Item).implicitHeight : 0
        active: row.isEnabled
        sourceComponent: row.control === "switch" ? onOff : row.control === "number" ? number : choices
    }
    Component {
        id: onOff
        SettingSwitch {
            title: row.title
            explanation: row.explanation
            checked: row.isOn
            onSwitched: on => App.notifications.setSwitch(row.key, on)
        }
    }
    Component {
        id: number
        SettingNumber {
            title: row.title
            explanation: row.explanation
            value: row.value
            from: row.from
            to: row.to
            step: row.step
            decimals: row.decimals
            unit: row.unit
            onChanged: shown => App.notifications.setNumber(row.key, shown)
        }
    }
    Component {
        id: choices
        SettingChoice {
            title: row.title
            explanation: row.explanation
            options: row.control === "hour" ? App.notifications.hours : App.notifications.levels
            value: row.choice
            onChosen: wanted => row.control === "hour" ? App.notifications.setHour(row.key, wanted)
                                                       : App.notifications.setLevel(row.key, wanted)
        }
    }
}
