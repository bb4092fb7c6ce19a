import QtQuick
import QtQuick.Layouts
import Orcalin

Item {
    id: panel

    required property Pantalla pantalla

    ColumnLayout {
        anchors.centerIn: parent
        width: parent.width
        spacing: 14
        ImagenSistema {
            nombre: "exclamationmark.triangle.fill"
            lado: 44
            tinte: Tema.naranja
            Layout.alignment: Qt.AlignHCenter
        }
        Texto {
            text: panel.pantalla.mensaje
            wrapMode: Text.Wrap
            elide: Text.ElideRight
            maximumLineCount: 8
            Layout.fillWidth: true
        }
        BotonDestacado {
            text: "Volver"
            focus: true
            onClicked: panel.pantalla.volver()
            Layout.alignment: Qt.AlignHCenter
        }
    }
}
