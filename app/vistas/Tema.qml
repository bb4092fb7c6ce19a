pragma Singleton
import QtQuick

// Colours and sizes, all derived from the desktop's palette and font.
QtObject {
    readonly property SystemPalette paleta: SystemPalette {}
    readonly property bool oscuro: paleta.window.hslLightness < 0.5

    readonly property color texto: paleta.windowText
    readonly property color secundario: mezcla(paleta.windowText, paleta.window, 0.66)
    readonly property color tenue: Qt.alpha(secundario, 0.35)
    // The highlight is made for backgrounds: on its own it must stand out as well.
    readonly property color acento: oscuro ? Qt.lighter(paleta.highlight, 1.25) : paleta.highlight
    readonly property color acentoSuave: Qt.alpha(acento, 0.12)
    readonly property color verde: oscuro ? "#5fd07a" : "#23863a"
    readonly property color naranja: oscuro ? "#ffb057" : "#b45309"

    readonly property int cuerpo: Math.max(13, Qt.application.font.pixelSize)
    readonly property int leyenda: Math.max(12, Math.round(cuerpo * 0.86))
    readonly property int titulo: Math.round(cuerpo * 1.25)
    readonly property int transicion: 180

    function mezcla(a: color, b: color, parte: real): color {
        return Qt.rgba(a.r * parte + b.r * (1 - parte), a.g * parte + b.g * (1 - parte),
                       a.b * parte + b.b * (1 - parte), 1);
    }
}
