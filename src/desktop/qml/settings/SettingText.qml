// A setting that is a text. `value` is what is stored; `changed` asks for another one when the field is left
// or confirmed. A secret is shown as dots.
import QtQuick
import QtQuick.Controls.Basic
import NimbaraPages

SettingRow {
    id: row

    property string value
    property string placeholder
    property bool secret
    property int most: 2000  // letters
    signal changed(string value)

    stacked: width < 620 * Theme.scale

    Field {
        implicitWidth: row.stacked ? row.width : 280 * Theme.scale
        width: implicitWidth
        text: row.value
        placeholderText: row.placeholder
        title: row.title
        Accessible.description: row.explanation
        echoMode: row.secret ? TextInput.Password : TextInput.Normal
        maximumLength: row.most
        onEditingFinished: {
            if (text.trim() !== row.value)
                row.changed(text.trim());
            text = Qt.binding(() => row.value);
        }
        Keys.onEscapePressed: text = Qt.binding(() => row.value)
    }
}
