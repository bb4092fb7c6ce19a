import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Orcalin

// The question before something is given up. Whoever just goes on pressing
// keys stays.
T.Popup {
    id: panel

    required property Salida salida

    anchors.centerIn: parent
    width: Math.min(380, parent.width - 48)
    padding: 24
    modal: true
    focus: true
    visible: salida.pregunta
    onClosed: salida.sigue()
    onOpened: {
        nombra();
        sigue.forceActiveFocus();
    }

    // The question may change as it is put.
    function nombra() {
        contentItem.parent.Accessible.name = pregunta.text;
    }

    implicitHeight: contentHeight + topPadding + bottomPadding

    T.Overlay.modal: Rectangle { color: "#59000000" }
    background: Rectangle {
        radius: 6
        color: Tema.paleta.window
        border.color: Tema.borde
    }
    contentItem: ColumnLayout {
        spacing: 14
        Texto {
            id: pregunta
            text: panel.salida.titular
            onTextChanged: if (panel.opened) panel.nombra()
            font.weight: Font.DemiBold
            wrapMode: Text.Wrap
            maximumLineCount: 3
            Layout.fillWidth: true
        }
        Leyenda {
            text: panel.salida.consecuencia
            wrapMode: Text.Wrap
            maximumLineCount: 4
            Layout.fillWidth: true
        }
        RowLayout {
            spacing: 12
            Layout.alignment: Qt.AlignHCenter
            Boton {
                text: "Salir"
                onClicked: panel.salida.sal()
            }
            BotonDestacado {
                id: sigue
                text: panel.salida.rotuloSeguir
                anuncio: pregunta.text
                onClicked: panel.salida.sigue()
            }
        }
    }
}
