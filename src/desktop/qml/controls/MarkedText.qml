// A line whose lead stands out. The only place that writes markup; what it is given is shown as it stands.
import QtQuick

Text {
    property string lead
    property string rest

    function escaped(text) {
        return text.replace(/&/g, "&amp;").replace(/</g, "&lt;").replace(/>/g, "&gt;");
    }

    textFormat: Text.StyledText
    text: (lead !== "" ? "<b>" + escaped(lead) + "</b>  " : "") + escaped(rest)
}
