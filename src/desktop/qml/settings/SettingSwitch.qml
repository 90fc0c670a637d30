// A setting that is on or off. `checked` is what is stored; `switched` asks for another state. A click on
// the words switches as well.
import QtQuick
import QtQuick.Controls.Basic
import NimbaraPages

SettingRow {
    id: row

    property bool checked
    signal switched(bool on)

    stacked: false

    TapHandler {
        parent: row.words
        onTapped: row.switched(!row.checked)
    }

    Switch {
        id: control
        readonly property int spokenRole: Accessible.CheckBox
        readonly property bool isCheckable: true
        readonly property bool isChecked: row.checked
        function press() {
            row.switched(!row.checked);
        }
        implicitWidth: 48 * Theme.scale
        implicitHeight: 36 * Theme.scale
        padding: 0
        checked: row.checked
        Accessible.name: row.title
        Accessible.description: row.explanation
        Keys.onReturnPressed: press()
        Keys.onEnterPressed: press()
        onClicked: {
            row.switched(checked);
            checked = Qt.binding(() => row.checked);
        }

        contentItem: null
        indicator: Rectangle {
            id: track
            anchors.centerIn: parent
            width: 46 * Theme.scale
            height: 26 * Theme.scale
            radius: height / 2
            color: control.checked ? Theme.accent : Theme.raised
            border.width: control.visualFocus ? 2 : 1
            border.color: control.visualFocus ? Theme.text : control.checked ? Theme.accent : Theme.muted
            opacity: control.enabled ? 1 : 0.5
            Behavior on color { ColorAnimation { duration: Theme.quick } }
            Rectangle {
                readonly property real gap: (track.height - height) / 2
                readonly property bool atRight: control.checked !== control.mirrored
                x: atRight ? track.width - width - gap : gap
                anchors.verticalCenter: parent.verticalCenter
                width: 18 * Theme.scale
                height: width
                radius: width / 2
                color: control.checked ? Theme.accentText : Theme.muted
                Behavior on x { NumberAnimation { duration: Theme.quick } }
            }
        }
    }
}
