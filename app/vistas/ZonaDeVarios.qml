import QtQuick
import QtQuick.Templates as T
import QtQuick.Layouts
import Orcalin

// The drop area with several items: the count, the total, and a row for each.
Item {
    id: zona

    required property Pantalla pantalla
    signal pulsada

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: 16
        spacing: 8
        Texto {
            text: zona.pantalla.cabecera
            font.weight: Font.DemiBold
            Layout.fillWidth: true
        }
        Item {
            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.leftMargin: 6
            Layout.rightMargin: 6

            ListView {
                id: lista
                anchors.fill: parent
                clip: true
                model: zona.pantalla.elegidos
                boundsBehavior: Flickable.StopAtBounds
                T.ScrollBar.vertical: barra
                delegate: RowLayout {
                    id: fila
                    required property string nombre
                    required property string icono
                    required property string clase
                    width: lista.width - barra.width
                    height: Math.max(20, titulo.implicitHeight + 4)
                    spacing: 6
                    ImagenSistema {
                        nombre: fila.icono
                        significado: fila.clase
                        lado: 14
                    }
                    Texto {
                        id: titulo
                        text: fila.nombre
                        horizontalAlignment: Text.AlignLeft
                        font.pixelSize: Tema.leyenda
                        Layout.fillWidth: true
                    }
                }
            }
            // The list scrolls with the wheel and the bar; a click anywhere in
            // the drop area means the same.
            MouseArea {
                anchors.fill: parent
                onClicked: zona.pulsada()
            }
            Deslizador {
                id: barra
                anchors { top: parent.top; bottom: parent.bottom; right: parent.right }
            }
        }
    }
}
