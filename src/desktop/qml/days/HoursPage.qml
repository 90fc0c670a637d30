// The days ahead: the list, then the curves; in a wide window side by side, with the next hours, sun and moon.
import QtQuick
import NimbaraItems
import NimbaraPages

ScrollPage {
    id: page

    most: 3000

    PlaceHeading {
        width: page.inner
        size: width < 300 * Theme.scale ? Theme.title : Theme.headline
    }
    PlainText {
        width: page.inner
        visible: App.isReady && App.hours.count === 0
        text: App.now.notice || (App.now.isLoading ? App.words.loading : App.words.noWeather)
        horizontalAlignment: Text.AlignLeft
        wrapMode: Text.Wrap
        color: Theme.muted
        font.pixelSize: Theme.body
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }

    Board {
        width: page.inner
        weights: [[1], [1, 1.15], [1, 1.3, 0.8]][page.lanes - 1]
        spacing: 2 * Theme.space
        isMirrored: LayoutMirroring.enabled

        DayList {
            readonly property int lane: 0
            visible: App.days.count > 0
        }
        ChartCard {
            readonly property int lane: 1
            // Higher where the window is.
            tall: page.lanes === 1 ? 400 : page.lanes === 2 ? 440 : Math.max(520, Math.min(900, 0.42 * page.height / Theme.scale))
        }
        Loader {
            readonly property int lane: 2
            visible: active
            active: page.lanes > 1 && App.now.hasWeather
            source: "HoursBeside.qml"
        }
    }
}
