import QtQuick
import QtQuick.Layouts
import Orcalin

Item {
    id: panel

    required property Pantalla pantalla

    ColumnLayout {
        anchors.centerIn: parent
        width: parent.width
        spacing: 16
        Texto {
            text: panel.pantalla.titular
            font.weight: Font.DemiBold
            Layout.fillWidth: true
        }
        Barra {
            value: panel.pantalla.pct
            indeterminate: panel.pantalla.pct <= 0
            Accessible.name: panel.pantalla.titular
            // Qt 6.4 gives the bar's value no other way to a screen reader.
            Accessible.description: (indeterminate ? "" : Math.round(value * 100) + " %, ")
                + panel.pantalla.detalle
            Layout.fillWidth: true
        }
        Leyenda {
            text: panel.pantalla.detalle
            Layout.fillWidth: true
        }
        Boton {
            text: "Cancelar"
            anuncio: panel.pantalla.anuncio
            focus: true
            onClicked: panel.pantalla.cancelar()
            Layout.alignment: Qt.AlignHCenter
        }
    }
}
