import QtQuick
import QtQuick.Layouts
import Orcalin

ColumnLayout {
    id: panel

    required property Pantalla pantalla

    spacing: 18

    ZonaDeArrastre {
        pantalla: panel.pantalla
        focus: true
        Layout.fillWidth: true
        Layout.fillHeight: true
    }
    Opciones {
        pantalla: panel.pantalla
        Layout.fillWidth: true
    }
    BotonDestacado {
        text: "Guardar"
        enabled: panel.pantalla.puedeGuardar
        // Later: a modal panel inside the click would keep a screen reader
        // waiting for the end of its own call. And the method itself: what is
        // called later twice is called once, however often it was clicked.
        onClicked: Qt.callLater(panel.pantalla.guardar)
        Layout.fillWidth: true
    }
}
