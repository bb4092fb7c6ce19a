import QtQuick

// Holds one panel at a time; the next one fades in. The first is there at once:
// whoever opens the window waits for it.
Loader {
    id: panel

    property bool estrenado: false

    focus: true
    onLoaded: {
        if (estrenado)
            aparicion.restart();
        estrenado = true;
    }

    NumberAnimation {
        id: aparicion
        target: panel
        property: "opacity"
        from: 0
        to: 1
        duration: Tema.transicion
        easing.type: Easing.InOutQuad
    }
}
