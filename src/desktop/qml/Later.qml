// A part of a page that is read and made when the window has drawn its first frame, which so comes sooner.
import QtQuick
import QtQuick.Window

Loader {
    property string file

    source: Window.window !== null && Window.window.hasDrawn ? file : ""
}
