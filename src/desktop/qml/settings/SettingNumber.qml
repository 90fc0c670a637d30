// A setting that is a number with a unit, changed by steps or by typing. `value` is what is stored; `changed`
// asks for another one within `from` and `to`. Comma and point are both accepted.
import QtQuick
import QtQuick.Controls.Basic
import NimbaraPages

SettingRow {
    id: row

    property real value
    property real from: 0
    property real to: 100
    property real step: 1
    property int decimals: 0
    property string unit
    property string less: "−"
    property string more: "+"
    signal changed(real value)

    function shown(number) {
        return String(Number(number.toFixed(row.decimals)));
    }
    function ask(number) {
        const bounded = Math.min(row.to, Math.max(row.from, Number(number.toFixed(row.decimals))));
        if (bounded !== row.value)
            row.changed(bounded);
        field.reset();
    }
    // To the next multiple of the step.
    function stepped(direction) {
        const steps = row.value / row.step;
        const near = direction > 0 ? Math.floor(steps + 1e-6) : Math.ceil(steps - 1e-6);
        row.ask((near + direction) * row.step);
    }

    Row {
        spacing: Theme.space / 2

        StepButton {
            text: row.less
            enabled: row.value > row.from
            onClicked: row.stepped(-1)
        }
        FocusScope {
            implicitWidth: field.width
            implicitHeight: 36 * Theme.scale
            width: implicitWidth
            height: implicitHeight

            TextField {
                id: field

                function reset() {
                    text = Qt.binding(() => row.shown(row.value));
                }
                function take() {
                    const typed = Number(text.trim().replace(",", ".").replace("−", "-"));
                    if (text.trim() !== "" && isFinite(typed))
                        row.ask(typed);
                    else
                        reset();
                }

                focus: true
                activeFocusOnTab: true
                width: Math.min((64 + (row.unit === "" ? 0 : 8)) * Theme.scale + symbol.implicitWidth,
                                row.width - 72 * Theme.scale - Theme.space)
                height: parent.height
                leftPadding: mirrored ? 12 + symbol.implicitWidth + 4 : 10
                rightPadding: mirrored ? 10 : 12 + symbol.implicitWidth + 4
                readonly property bool mirrored: LayoutMirroring.enabled
                horizontalAlignment: TextInput.AlignRight
                verticalAlignment: TextInput.AlignVCenter
                inputMethodHints: Qt.ImhFormattedNumbersOnly
                text: row.shown(row.value)
                color: Theme.text
                selectionColor: Theme.accent
                selectedTextColor: Theme.accentText
                font.pixelSize: Theme.body
                selectByMouse: true
                Accessible.role: Accessible.SpinBox
                Accessible.name: row.title
                Accessible.description: row.unit !== "" ? row.shown(row.value) + " " + row.unit : row.explanation
                onActiveFocusChanged: if (activeFocus) selectAll(); else take()
                onAccepted: {
                    take();
                    selectAll();
                }
                Keys.onUpPressed: row.stepped(1)
                Keys.onDownPressed: row.stepped(-1)
                Keys.onEscapePressed: reset()

                background: Rectangle {
                    radius: 10
                    color: Theme.page
                    border.width: field.activeFocus ? 2 : 1
                    border.color: field.activeFocus ? Theme.accent : Theme.outline
                }
                PlainText {
                    id: symbol
                    anchors.right: parent.right
                    anchors.rightMargin: 12
                    anchors.verticalCenter: parent.verticalCenter
                    text: row.unit
                    color: Theme.muted
                    font.pixelSize: Theme.small
                    Accessible.ignored: true
                }
            }
        }
        StepButton {
            text: row.more
            enabled: row.value < row.to
            onClicked: row.stepped(1)
        }
    }

    // The keys up and down do the same for the keyboard.
    component StepButton: Pressable {
        id: button
        implicitWidth: 36 * Theme.scale
        implicitHeight: 36 * Theme.scale
        activeFocusOnTab: false
        focusPolicy: Qt.NoFocus
        autoRepeat: true
        Accessible.name: text + " " + row.title
        contentItem: PlainText {
            text: button.text
            horizontalAlignment: Text.AlignHCenter
            verticalAlignment: Text.AlignVCenter
            color: Theme.accent
            opacity: button.enabled ? 1 : 0.4
            font.pixelSize: Theme.title
        }
        background: Rectangle {
            radius: height / 2
            color: Theme.accent
            opacity: button.down ? 0.24 : button.hovered ? 0.16 : 0.09
        }
    }
}
