import QtQuick
import QtQuick.Templates as T
import Orcalin

// The drop area: takes drops, and opens the file panel on a click, on Space
// and by the screen reader's action.
T.AbstractButton {
    id: zona

    required property Pantalla pantalla

    onClicked: Qt.callLater(pantalla.elegir)

    Accessible.role: Accessible.Button
    Accessible.onPressAction: clicked()
    Accessible.name: "Elegir qué guardar"
    Accessible.description: pantalla.contenido === Pantalla.Nada
        ? "Arrastra aquí lo que quieras guardar" : pantalla.resumen

    background: Contorno {
        trazo: zona.pantalla.encima ? Tema.acento : Tema.tenue
        relleno: zona.pantalla.encima ? Tema.acentoSuave : "transparent"
        marca: zona.activeFocus && Foco.marcado ? Tema.acento : "transparent"
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
