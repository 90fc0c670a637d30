// Text as it stands: what comes from outside is never read as markup.
import QtQuick

Text {
    textFormat: Text.PlainText
}
