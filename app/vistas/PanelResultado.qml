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
            nombre: "checkmark.circle.fill"
            significado: "Guardado"
            lado: 48
            tinte: Tema.verde
            Layout.alignment: Qt.AlignHCenter
        }
        Texto {
            text: panel.pantalla.tamanos
            font.pixelSize: Tema.titulo
            Layout.fillWidth: true
        }
        Leyenda {
            visible: text !== ""
            text: panel.pantalla.ahorro
            Layout.fillWidth: true
        }
        Leyenda {
            text: panel.pantalla.duracion
            Layout.fillWidth: true
        }
        RowLayout {
            spacing: 10
            Layout.alignment: Qt.AlignHCenter
            Boton {
                text: "Ver en el Finder"
                onClicked: panel.pantalla.revela()
            }
            BotonDestacado {
                text: "Guardar otra cosa"
                anuncio: panel.pantalla.anuncio
                focus: true
                onClicked: panel.pantalla.otraCosa()
            }
        }
    }
}
