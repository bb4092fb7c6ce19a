import QtQuick
import QtQuick.Controls.Fusion
import QtQuick.Shapes
import Orcalin

// The drop area: takes drops, and opens the file panel on a click, on Space
// and by the screen reader's action.
AbstractButton {
    id: zona

    required property Pantalla pantalla
    readonly property color contorno: pantalla.encima ? Tema.acento : Tema.tenue

    onClicked: Qt.callLater(pantalla.elegir)

    Accessible.role: Accessible.Button
    Accessible.onPressAction: clicked()
    Accessible.name: "Elegir qué guardar"
    Accessible.description: pantalla.contenido === Pantalla.Nada
        ? "Arrastra aquí lo que quieras guardar" : pantalla.resumen

    background: Shape {
        ShapePath {
            strokeWidth: 2
            strokeColor: zona.contorno
            strokeStyle: ShapePath.DashLine
            // In units of the line's width: 7 on, 5 off.
            dashPattern: [3.5, 2.5]
            fillColor: zona.pantalla.encima ? Tema.acentoSuave : "transparent"
            PathRectangulo { ancho: zona.width; alto: zona.height; borde: 1; radio: 14 }
        }
        ShapePath {
            strokeWidth: 2
            strokeColor: zona.activeFocus && Foco.marcado ? Tema.acento : "transparent"
            fillColor: "transparent"
            PathRectangulo { ancho: zona.width; alto: zona.height; borde: 5; radio: 10 }
        }
    }

    contentItem: Item {
        Loader {
            anchors.fill: parent
            sourceComponent: {
                switch (zona.pantalla.contenido) {
                case Pantalla.Nada: return nada;
                case Pantalla.Uno: return uno;
                default: return varios;
                }
            }
        }
    }

    HoverHandler { cursorShape: Qt.PointingHandCursor }

    DropArea {
        anchors.fill: parent
        // Copies, from the first moment on: a file manager that hears "move"
        // would delete the originals.
        onEntered: drag => {
            if (zona.pantalla.arrastreEntra(drag.urls))
                drag.accept(Qt.CopyAction);
            else
                drag.accepted = false;
        }
        onPositionChanged: drag => drag.accept(Qt.CopyAction)
        onExited: zona.pantalla.arrastreSale()
        onDropped: drop => {
            drop.accept(Qt.CopyAction);
            zona.pantalla.suelta(drop.urls);
        }
    }

    Component { id: nada; ZonaVacia { encima: zona.pantalla.encima } }
    Component { id: uno; ZonaDeUno { pantalla: zona.pantalla } }
    Component { id: varios; ZonaDeVarios { pantalla: zona.pantalla; onPulsada: zona.clicked() } }
}
