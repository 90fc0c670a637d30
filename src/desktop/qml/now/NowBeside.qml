// Beside the present, where there is room: the curves of the days ahead.
import QtQuick
import NimbaraPages
import NimbaraItems

ChartCard {
    tall: 460
}
