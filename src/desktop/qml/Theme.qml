// The one place of sizes and colours: a type scale, a grid of spaces, and a palette for each theme.
pragma Singleton
import QtQuick

QtObject {
    id: theme

    property string choice: "system"
    property SystemPalette system: SystemPalette {}
    readonly property bool dark: choice === "dark" || (choice === "system" && system.window.hslLightness < 0.5)
    property real enlargement: 1
    property bool calm: false
    property bool contrasting: false
    readonly property real scale: Math.max(1, Application.font.pointSize / 11) * enlargement

    // What there is of some parts of a line.
    function joined(parts, separator) {
        return parts.filter(part => part).join(separator);
    }

    readonly property int tiny: Math.round(12 * scale)
    readonly property int small: Math.round(13 * scale)
    readonly property int body: Math.round(15 * scale)
    readonly property int title: Math.round(18 * scale)
    readonly property int headline: Math.round(28 * scale)
    readonly property int display: Math.round(84 * scale)

    readonly property int space: 8
    readonly property int radius: 16
    readonly property int quick: calm ? 0 : 140

    // Of four: usual and high contrast, light and dark.
    function tone(light, night, lightContrast, nightContrast) {
        return contrasting ? (dark ? nightContrast : lightContrast) : dark ? night : light;
    }

    readonly property color page: tone("#f2f5f8", "#11161d", "#ffffff", "#000000")
    readonly property color card: tone("#ffffff", "#1b222c", "#ffffff", "#000000")
    readonly property color raised: tone("#e6ecf2", "#27303d", "#e4e9ee", "#22272e")
    readonly property color outline: tone("#dde4eb", "#2c3644", "#4a5561", "#a9b4c0")
    readonly property color text: tone("#17202a", "#eef2f6", "#000000", "#ffffff")
    readonly property color muted: tone("#566372", "#a3b0bf", "#2b333c", "#dbe2ea")
    readonly property color accent: tone("#1f64ab", "#7cb8f5", "#0b3f78", "#a9d3ff")
    readonly property color accentText: dark ? "#0d1b2a" : "#ffffff"
    readonly property color danger: tone("#b3202c", "#ff9a9f", "#8a0f1a", "#ffc2c5")
    readonly property color sun: dark ? "#f7bd4a" : "#ca8000"
    readonly property color rain: dark ? "#5aa9f0" : "#2874c2"
    readonly property color warm: dark ? "#ff9a76" : "#d1502b"
    readonly property color cold: dark ? "#73b7ff" : "#2f80d0"
    readonly property color felt: dark ? "#e8c6a8" : "#b8835c"
    readonly property color wind: dark ? "#6fd0b4" : "#1f8a6d"
    readonly property color air: dark ? "#c2a6f2" : "#7a52b8"
    readonly property color ultraviolet: dark ? "#7aa5ff" : "#2f5fd0"  // a hue that no band of the air has
    readonly property color night: dark ? Qt.rgba(0, 0, 0, 0.22) : Qt.rgba(0.1, 0.16, 0.35, 0.06)
    readonly property color cloud: dark ? "#c5cfda" : "#7d8b9b"
    // Space is dark by day as well.
    readonly property color cosmos: "#050a13"
    readonly property color cosmosInk: "#e6edf5"
    readonly property color pin: "#ff8d6b"
    readonly property color moonLit: "#f1ecd2"
    readonly property color moonShade: dark ? "#343d4b" : "#46505f"

    // Of the steps of the K index: quiet, unsettled, active, storms G1 to G5.
    readonly property var kpColours: dark
        ? ["#5fbf8f", "#9ccb6a", "#e6cf5a", "#f2ac4a", "#f28a4a", "#ee6a55", "#e0508a", "#b87af0"]
        : ["#2f9e6b", "#79a832", "#c9a400", "#dd8400", "#d9601f", "#c93a32", "#b3256b", "#7a3fc0"]
    // Of the bands of the air: the European scale's six, then the four that only the American one has, whose first
    // three are "good", "moderate" and "for sensitive groups".
    readonly property var airColours: dark
        ? ["#5fc6a6", "#a9cf6a", "#e6cf5a", "#f0934d", "#e45f6d", "#b87ad6", "#f2ac4a", "#ee6a55", "#b87ad6", "#c05070"]
        : ["#2f9e7b", "#7fa832", "#c9a400", "#d9701f", "#c4314a", "#7d3f9e", "#d97a00", "#c93a32", "#7d3f9e", "#7a1f3a"]
    // Of earthquakes of the last hour, the last six hours, the last day.
    readonly property var ageColours: dark ? ["#ff6b6b", "#f7a94a", "#d9c77a"] : ["#d6273c", "#d97a00", "#8a7a34"]
    readonly property color sea: dark ? "#141c26" : "#dfe9f2"
    readonly property color land: dark ? "#2b3644" : "#f8faf7"
    readonly property color border: dark ? "#3d4a5a" : "#d3dade"

    function alertColour(level) {
        const colours = dark
            ? { info: "#3a4757", advisory: "#4a4020", warning: "#5b3a22", critical: "#6e2530" }
            : { info: "#dfe8f1", advisory: "#fdeebd", warning: "#ffddc2", critical: "#ffd3d6" };
        return colours[level] ?? colours.info;
    }

    // Strong enough for a line beside text.
    function alertInk(level) {
        const colours = dark
            ? { info: "#8fb3d9", advisory: "#f0cd5a", warning: "#ff9d57", critical: "#ff6b7a" }
            : { info: "#4d7ba8", advisory: "#c79a00", warning: "#d9661f", critical: "#c4213a" };
        return colours[level] ?? colours.info;
    }
}
