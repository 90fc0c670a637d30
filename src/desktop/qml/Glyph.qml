// The picture of a sky.
import QtQuick
import QtQuick.Window

Image {
    property real size: 32
    property string sky
    property bool isDay: true
    property bool onDark: false

    width: size
    height: size
    sourceSize.width: Math.ceil(size * Screen.devicePixelRatio)
    sourceSize.height: Math.ceil(size * Screen.devicePixelRatio)
    source: sky === "" ? "" : "image://sky/" + sky + "/" + (isDay ? "day" : "night") + "/" + (onDark ? "dark" : "light")
    Accessible.ignored: true
}
