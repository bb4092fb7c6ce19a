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
        onClicked: panel.pantalla.guardar()
        Layout.fillWidth: true
    }
}
