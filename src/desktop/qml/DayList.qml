// The days one below the other on one scale of temperatures; each opens to its hours.
import QtQuick
import NimbaraPages
import NimbaraItems

Card {
    title: App.words.sevenDays

    Column {
        width: parent.width
        Repeater {
            model: App.days
            DayRow { width: parent.width }
        }
    }
}
