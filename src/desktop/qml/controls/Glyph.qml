// The picture of a sky.
import QtQuick
import QtQuick.Window

Image {
    property real size: 32
    property string sky
    property bool isDay: true
    property bool overDark: false

    width: size
    height: size
    sourceSize.width: Math.ceil(size * Screen.devicePixelRatio)
    sourceSize.height: Math.ceil(size * Screen.devicePixelRatio)
    source: sky === "" ? "" : "image://sky/" + sky + "/" + (isDay ? "day" : "night") + "/" + (overDark ? "dark" : "light")
    Accessible.ignored: true
}
