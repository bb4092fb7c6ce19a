import QtQuick
import Orcalin

// The compression screen: shows the panel that the screen's state asks for.
Item {
    id: vista

    required property Pantalla pantalla

    Component.onCompleted: pantalla.aparece()

    PanelCambiante {
        anchors.fill: parent
        anchors.margins: 24
        sourceComponent: {
            switch (vista.pantalla.panel) {
            case Pantalla.Trabajando: return trabajo;
            case Pantalla.Hecho: return resultado;
            case Pantalla.Error: return fallo;
            default: return reposo;
            }
        }
    }

    Component { id: reposo; PanelReposo { pantalla: vista.pantalla } }
    Component { id: trabajo; PanelTrabajo { pantalla: vista.pantalla } }
    Component { id: resultado; PanelResultado { pantalla: vista.pantalla } }
    Component {
        id: fallo
        PanelFallo {
            mensaje: vista.pantalla.mensaje
            onVuelta: vista.pantalla.volver()
        }
    }
}
