import QtQuick
import QtQuick.Layouts
import Orcalin

Item {
    id: panel

    required property Explorador explorador

    ColumnLayout {
        anchors.centerIn: parent
        spacing: 14
        ImagenSistema {
            nombre: "checkmark.circle.fill"
            lado: 46
            tinte: Tema.verde
            Layout.alignment: Qt.AlignHCenter
        }
        Texto {
            id: titulo
            text: "Recuperado"
            font.pixelSize: Tema.titulo
            Layout.alignment: Qt.AlignHCenter
        }
        RowLayout {
            spacing: 10
            Layout.alignment: Qt.AlignHCenter
            Boton {
                text: "Ver en el Finder"
                onClicked: panel.explorador.revela()
            }
            BotonDestacado {
                text: "Volver"
                anuncio: titulo.text
                focus: true
                porEscape: true
                onClicked: panel.explorador.volver()
            }
        }
    }
}
