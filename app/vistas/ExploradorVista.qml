import QtQuick
import Orcalin

// The archive browser: the list, or the panel that stands before it.
FocusScope {
    id: vista

    required property Explorador explorador
    readonly property bool enLista: explorador.panel === Explorador.Contenido

    focus: true
    Component.onCompleted: explorador.cargar()

    // Kept while something else shows: one comes back to where one was.
    PanelContenido {
        anchors.fill: parent
        explorador: vista.explorador
        visible: vista.enLista
        enabled: vista.enLista
        focus: vista.enLista
    }
    PanelCambiante {
        anchors.fill: parent
        anchors.margins: 28
        focus: !vista.enLista
        sourceComponent: {
            switch (vista.explorador.panel) {
            case Explorador.Ocupado: return ocupado;
            case Explorador.Recuperado: return recuperado;
            case Explorador.Problema: return problema;
            case Explorador.PedirClave: return pedirClave;
            default: return null;
            }
        }
    }

    Component { id: ocupado; PanelOcupado { texto: vista.explorador.texto } }
    Component { id: recuperado; PanelRecuperado { explorador: vista.explorador } }
    Component {
        id: problema
        PanelFallo {
            mensaje: vista.explorador.texto
            onVuelta: vista.explorador.reintenta()
        }
    }
    Component { id: pedirClave; PanelClave { explorador: vista.explorador } }
}
