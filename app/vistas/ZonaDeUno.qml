import QtQuick
import QtQuick.Layouts
import Orcalin

// The drop area with one item.
Item {
    id: zona

    required property Pantalla pantalla

    ColumnLayout {
        anchors.centerIn: parent
        width: parent.width - 40
        spacing: 8
        ImagenSistema {
            nombre: zona.pantalla.icono
            significado: zona.pantalla.clase
            lado: 40
            tinte: Tema.acento
            Layout.alignment: Qt.AlignHCenter
        }
        Texto {
            text: zona.pantalla.cabecera
            font.weight: Font.DemiBold
            Layout.fillWidth: true
        }
        Leyenda {
            text: zona.pantalla.peso
            Layout.fillWidth: true
        }
    }
}
