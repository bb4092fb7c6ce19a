pragma Singleton
import QtQuick

// Colours and sizes, all derived from the desktop's palette and font.
QtObject {
    readonly property SystemPalette paleta: SystemPalette {}
    readonly property bool oscuro: paleta.window.hslLightness < 0.5

    readonly property color texto: paleta.windowText
    readonly property color secundario: mezcla(paleta.windowText, paleta.window, 0.66)
    readonly property color tenue: Qt.alpha(secundario, 0.35)
    // The highlight is made for backgrounds, and may be any colour that the user
    // likes: on its own it must stand out as well.
    readonly property color acento: queResalte(oscuro ? Qt.lighter(paleta.highlight, 1.25)
                                                      : paleta.highlight)
    readonly property color acentoSuave: Qt.alpha(acento, 0.12)
    // White on the usual highlights is hard to read: a darker ground for it.
    readonly property color destacado: oscuro ? paleta.highlight : Qt.darker(paleta.highlight, 1.3)
    readonly property color sobreDestacado: claridad(destacado) > 0.179 ? "#000000" : "#ffffff"
    readonly property color borde: mezcla(paleta.windowText, paleta.window, 0.55)
    readonly property color tenuisimo: mezcla(paleta.windowText, paleta.window, 0.04)
    readonly property color apagado: mezcla(paleta.windowText, paleta.window, 0.12)
    readonly property color verde: oscuro ? "#5fd07a" : "#23863a"
    readonly property color naranja: oscuro ? "#ffb057" : "#a14706"

    readonly property int cuerpo: Math.max(13, Qt.application.font.pixelSize)
    readonly property int leyenda: Math.max(12, Math.round(cuerpo * 0.86))
    readonly property int titulo: Math.round(cuerpo * 1.25)
    readonly property int transicion: 180

    // How bright a colour looks, 0 to 1.
    function claridad(c: color): real {
        const lineal = v => v <= 0.04045 ? v / 12.92 : Math.pow((v + 0.055) / 1.055, 2.4);
        return 0.2126 * lineal(c.r) + 0.7152 * lineal(c.g) + 0.0722 * lineal(c.b);
    }
    function contraste(a: color, b: color): real {
        const uno = claridad(a) + 0.05, otro = claridad(b) + 0.05;
        return Math.max(uno, otro) / Math.min(uno, otro);
    }
    // The colour, as near to that of the text as it takes to tell it from the window.
    function queResalte(c: color): color {
        for (let parte = 0; parte < 1; parte += 0.1) {
            const probado = mezcla(paleta.windowText, c, parte);
            if (contraste(probado, paleta.window) >= 3)
                return probado;
        }
        return paleta.windowText;
    }
    function mezcla(a: color, b: color, parte: real): color {
        return Qt.rgba(a.r * parte + b.r * (1 - parte), a.g * parte + b.g * (1 - parte),
                       a.b * parte + b.b * (1 - parte), 1);
    }
}
