import QtQuick
import QtQuick.Layouts

// A failure: the message, and the way back.
Item {
    id: panel

    required property string mensaje
    signal vuelta

    ColumnLayout {
        anchors.centerIn: parent
        width: parent.width
        spacing: 14
        ImagenSistema {
            nombre: "exclamationmark.triangle.fill"
            significado: "Fallo"
            lado: 44
            tinte: Tema.naranja
            Layout.alignment: Qt.AlignHCenter
        }
        Texto {
            text: panel.mensaje
            wrapMode: Text.Wrap
            elide: Text.ElideRight
            maximumLineCount: 8
            Layout.fillWidth: true
        }
        BotonDestacado {
            text: "Volver"
            anuncio: "Fallo: " + panel.mensaje
            focus: true
            porEscape: true
            onClicked: panel.vuelta()
            Layout.alignment: Qt.AlignHCenter
        }
    }
}
