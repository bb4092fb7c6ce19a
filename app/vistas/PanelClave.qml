import QtQuick
import QtQuick.Layouts
import Orcalin

// The password prompt. Return sends what is there, also nothing.
Item {
    id: panel

    required property Explorador explorador

    Component.onCompleted: campo.forceActiveFocus()

    ColumnLayout {
        anchors.centerIn: parent
        spacing: 14
        ImagenSistema {
            nombre: "lock.fill"
            lado: 42
            Layout.alignment: Qt.AlignHCenter
        }
        Texto {
            id: titulo
            text: "Este archivo está cifrado"
            font.weight: Font.DemiBold
            Layout.alignment: Qt.AlignHCenter
        }
        CampoSecreto {
            id: campo
            anuncio: titulo.text
            text: panel.explorador.contrasena
            onTextEdited: panel.explorador.contrasena = text
            onAccepted: panel.explorador.enviaClave()
            Layout.preferredWidth: 260
            Layout.alignment: Qt.AlignHCenter
        }
        BotonDestacado {
            text: "Abrir"
            porTecla: false
            enabled: panel.explorador.contrasena !== ""
            onClicked: panel.explorador.enviaClave()
            Layout.alignment: Qt.AlignHCenter
        }
    }
}
