// A sign of lines in a colour.
import QtQuick
import QtQuick.Window

Image {
    property real size: 20
    property string name
    property color ink: "black"

    width: size
    height: size
    sourceSize.width: Math.ceil(size * Screen.devicePixelRatio)
    sourceSize.height: Math.ceil(size * Screen.devicePixelRatio)
    source: name === "" ? "" : "image://sign/" + name + "/" + ink.toString().slice(-6)
    Accessible.ignored: true
}
