// The globe in three dimensions. Loaded only when it is shown, and only where its modules are installed.
import QtQuick
import QtQuick3D
import NimbaraScene
import NimbaraPages
import NimbaraItems

View3D {
    id: view

    property real pulse: -1  // from 0 to 1 again and again; -1 at rest
    readonly property vector2d pixel: Qt.vector2d(2 / Math.max(1, width), 2 / Math.max(1, height))

    environment: SceneEnvironment {
        backgroundMode: SceneEnvironment.Transparent
        tonemapMode: SceneEnvironment.TonemapModeNone
        antialiasingMode: SceneEnvironment.NoAA
        depthPrePassEnabled: false
    }

    PerspectiveCamera {
        position: App.globe.eye
        eulerRotation: App.globe.eyeTurn
        fieldOfView: 30
        clipNear: 2
        clipFar: 12000
    }

    component Blended: CustomMaterial {
        shadingMode: CustomMaterial.Unshaded
        sourceBlend: CustomMaterial.One
        destinationBlend: CustomMaterial.OneMinusSrcAlpha
        depthDrawMode: Material.NeverDepthDraw
        cullMode: Material.NoCulling
    }
    component Points: Model {
        property alias table: instances.source
        source: "#Rectangle"
        visible: instances.count > 0
        castsShadows: false
        receivesShadows: false
        instancing: SceneInstances { id: instances }
        materials: Blended {
            property vector2d pixel: view.pixel
            vertexShader: "points.vert"
            fragmentShader: "points.frag"
        }
    }

    Points { table: App.globe.stars }
    Points { table: App.globe.sunGlow }

    // Made when its surface is there, and anew with another: a texture takes up only the data that it begins with.
    Repeater3D {
        model: App.globe.surfaces
        Model {
            required property int index
            geometry: SceneSphere {}
            materials: CustomMaterial {
                property vector3d sun: App.globe.sun
                property TextureInput surface: TextureInput {
                    texture: Texture {
                        textureData: SceneTexture { source: App.globe.surface }
                        generateMipmaps: true
                        mipFilter: Texture.Linear
                        tilingModeHorizontal: Texture.Repeat
                        tilingModeVertical: Texture.ClampToEdge
                    }
                }
                shadingMode: CustomMaterial.Unshaded
                vertexShader: "earth.vert"
                fragmentShader: "earth.frag"
            }
        }
    }

    Model {
        geometry: SceneSphere {}
        scale: Qt.vector3d(1.15, 1.15, 1.15)
        materials: Blended {
            property vector3d sun: App.globe.sun
            cullMode: Material.FrontFaceCulling
            vertexShader: "air.vert"
            fragmentShader: "air.frag"
        }
    }

    Model {
        source: "#Rectangle"
        visible: quakes.count > 0
        instancing: SceneInstances { id: quakes; source: App.globe.earthquakes }
        materials: Blended {
            property real moment: view.pulse
            vertexShader: "pulses.vert"
            fragmentShader: "pulses.frag"
        }
    }

    component Strokes: Model {
        property alias table: strokes.source
        source: "#Rectangle"
        visible: strokes.count > 0
        instancing: SceneInstances { id: strokes }
        materials: Blended {
            property vector2d pixel: view.pixel
            vertexShader: "lines.vert"
            fragmentShader: "lines.frag"
        }
    }
    Strokes { table: App.globe.ground }
    Strokes { table: App.globe.orbit }

    Repeater3D {
        model: App.globe.groupCount
        Points {
            required property int index
            table: App.globe.group(index)
        }
    }
}
