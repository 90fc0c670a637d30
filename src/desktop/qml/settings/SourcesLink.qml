// Goes to where official warnings come from.
import QtQuick
import NimbaraPages
import NimbaraItems

PlainButton {
    readonly property Main main: Window.window as Main

    text: App.words.sources
    onClicked: if (main) main.page = "sources"
}
