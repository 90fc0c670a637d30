// The sky beside the texts of the present, from the texts' end to the card's.
import QtQuick
import NimbaraItems
import NimbaraPages

SkyScenery {
    sunAltitude: app.scene.sunAltitude
    sunAlong: app.scene.sunAlong
    moonAltitude: app.scene.moonAltitude
    moonAlong: app.scene.moonAlong
    moonIllumination: app.scene.moonIllumination
    moonLitOnRight: app.scene.moonLitOnRight
    clouds: app.scene.clouds
    fog: app.scene.fog
    rain: app.scene.rain
    snow: app.scene.snow
    hasLightning: app.scene.hasLightning
    fadesToRight: LayoutMirroring.enabled
    Accessible.ignored: true
}
