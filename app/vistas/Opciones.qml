import QtQuick
import QtQuick.Controls.Fusion
import QtQuick.Layouts
import Orcalin

ColumnLayout {
    id: opciones

    required property Pantalla pantalla

    spacing: 6

    CheckBox {
        text: "Comprimir al máximo"
        checked: opciones.pantalla.maximo
        onToggled: opciones.pantalla.maximo = checked
        Accessible.name: text
    }
    Leyenda {
        visible: opciones.pantalla.maximo
        text: "Ocupa bastante menos y tarda unas quince veces más."
        horizontalAlignment: Text.AlignLeft
        Layout.fillWidth: true
    }
    CheckBox {
        text: "Cifrar"
        checked: opciones.pantalla.cifrar
        onToggled: opciones.pantalla.cifrar = checked
        Accessible.name: text
    }
    TextField {
        visible: opciones.pantalla.cifrar
        placeholderText: "Contraseña"
        echoMode: TextInput.Password
        inputMethodHints: Qt.ImhHiddenText | Qt.ImhSensitiveData | Qt.ImhNoPredictiveText
        text: opciones.pantalla.contrasena
        onTextEdited: opciones.pantalla.contrasena = text
        onVisibleChanged: if (visible) forceActiveFocus()
        Accessible.name: placeholderText
        Layout.fillWidth: true
    }
    Leyenda {
        visible: opciones.pantalla.cifrar
        text: "Sin esta contraseña no hay forma de recuperar lo guardado. No se puede restablecer."
        color: Tema.naranja
        horizontalAlignment: Text.AlignLeft
        Layout.fillWidth: true
    }
}
