import QtQuick

// Holds one panel at a time; the next one fades in.
Loader {
    id: panel

    focus: true
    onLoaded: aparicion.restart()

    NumberAnimation on opacity {
        id: aparicion
        from: 0
        to: 1
        duration: Tema.transicion
        easing.type: Easing.InOutQuad
    }
}
