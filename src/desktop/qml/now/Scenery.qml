// The sky beside the texts of the present, from the texts' end to the card's.
import QtQuick
import NimbaraItems
import NimbaraPages

SkyScenery {
    model: App
    fadesToRight: LayoutMirroring.enabled
    Accessible.ignored: true
}
