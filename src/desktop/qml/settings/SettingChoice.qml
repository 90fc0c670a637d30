// A setting that is one of a few. `options` have a `value` and a `text`; `value` is what is stored, `chosen`
// asks for another one.
import QtQuick
import QtQuick.Controls.Basic
import NimbaraPages

SettingRow {
    id: row

    property var options
    property var value
    signal chosen(var value)

    Choice {
        least: 200  // so that those below each other are alike
        model: row.options
        value: row.value
        title: row.title
        explanation: row.explanation
        onChosen: value => row.chosen(value)
    }
}
