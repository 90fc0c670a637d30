// What a forecaster would say of the day.
import QtQuick
import NimbaraPages
import NimbaraItems

LinesCard {
    title: App.words.brief
    lines: App.now.brief
}
