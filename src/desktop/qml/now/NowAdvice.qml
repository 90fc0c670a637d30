// The next good hours out of doors.
import QtQuick
import NimbaraItems
import NimbaraPages

LinesCard {
    title: App.words.advice
    lines: App.now.advice
}
