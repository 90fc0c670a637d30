// A part of a page that is read and made once the window has drawn its first frame, which so comes sooner. For what
// stands below everything else on its page: nothing moves when it comes.
import QtQuick
import QtQuick.Window
import NimbaraPages

Loader {
    property string file

    readonly property Main main: Window.window as Main

    source: main !== null && main.hasDrawn ? file : ""
}
