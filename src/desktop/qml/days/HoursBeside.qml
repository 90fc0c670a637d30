// Beside the days, or beside the curves as well, where there is room: the next hours, sun and moon.
import QtQuick
import NimbaraItems
import NimbaraPages

Column {
    id: beside

    spacing: 2 * Theme.space

    HourStrip {
        visible: App.hours.count > 0
        width: beside.width
    }
    SkyCards { width: beside.width }
}
