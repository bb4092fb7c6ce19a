import QtQuick
import QtQuick.Layouts
import Orcalin

ColumnLayout {
    id: opciones

    required property Pantalla pantalla
    // What belongs to an option stands under its text.
    readonly property int sangria: maximo.indicator.width + maximo.spacing

    spacing: 4

    Casilla {
        id: maximo
        text: "Comprimir al máximo"
        checked: opciones.pantalla.maximo
        onCheckedChanged: opciones.pantalla.maximo = checked
    }
    Leyenda {
        visible: opciones.pantalla.maximo
        text: "Ocupa bastante menos y tarda unas quince veces más."
        horizontalAlignment: Text.AlignLeft
        Layout.leftMargin: opciones.sangria
        Layout.fillWidth: true
    }
    Casilla {
        text: "Cifrar"
        checked: opciones.pantalla.cifrar
        onCheckedChanged: opciones.pantalla.cifrar = checked
    }
    CampoSecreto {
        visible: opciones.pantalla.cifrar
        text: opciones.pantalla.contrasena
        onTextEdited: opciones.pantalla.contrasena = text
        onVisibleChanged: if (visible) forceActiveFocus()
        Layout.leftMargin: opciones.sangria
        Layout.fillWidth: true
    }
    Leyenda {
        visible: opciones.pantalla.cifrar
        text: "Sin esta contraseña no hay forma de recuperar lo guardado. No se puede restablecer."
        color: Tema.naranja
        horizontalAlignment: Text.AlignLeft
        Layout.leftMargin: opciones.sangria
        Layout.fillWidth: true
    }
}
