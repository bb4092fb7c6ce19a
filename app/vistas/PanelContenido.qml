import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Orcalin

// The contents: search bar, list, and what can be done with it.
FocusScope {
    id: panel

    required property Explorador explorador
    readonly property Item encima: T.Overlay.overlay

    Connections {
        target: panel.explorador
        function onFocoBusqueda() {
            // An open menu or question keeps the keyboard, and leaves it to the field.
            if (panel.encima.visibleChildren.length > 0)
                campo.focus = true;
            else
                campo.forceActiveFocus();
        }
    }
    Shortcut {
        sequences: [StandardKey.Find]
        enabled: panel.enabled
        onActivated: {
            campo.forceActiveFocus();
            campo.selectAll();
        }
    }
    Shortcut {
        sequence: "Escape"
        enabled: panel.enabled && panel.explorador.busca !== ""
        onActivated: panel.explorador.busca = ""
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: 0

        Rectangle {
            color: Tema.tenuisimo
            implicitHeight: buscador.implicitHeight + 20
            Layout.fillWidth: true
            RowLayout {
                id: buscador
                anchors.fill: parent
                anchors.margins: 10
                spacing: 8
                ImagenSistema { nombre: "magnifyingglass"; lado: 16 }
                Campo {
                    id: campo
                    focus: true
                    background: null
                    leftPadding: 2
                    placeholderText: "Buscar dentro de " + panel.explorador.nombre
                    text: panel.explorador.busca
                    onTextEdited: panel.explorador.busca = text
                    Keys.onDownPressed: {
                        lista.forceActiveFocus();
                        lista.va(Math.max(0, lista.currentIndex), Qt.NoModifier);
                    }
                    Accessible.name: placeholderText
                    Accessible.description: panel.explorador.cuenta
                    Layout.fillWidth: true
                }
                BotonDeImagen {
                    visible: panel.explorador.busca !== ""
                    nombre: "xmark.circle.fill"
                    texto: "Borrar la búsqueda"
                    onClicked: {
                        panel.explorador.busca = "";
                        campo.forceActiveFocus();
                    }
                }
            }
        }
        Divisoria {}
        ListaDeEntradas {
            id: lista
            explorador: panel.explorador
            onTecleado: texto => {
                campo.forceActiveFocus();
                panel.explorador.busca += texto;
            }
            Layout.fillWidth: true
            Layout.fillHeight: true
        }
        Divisoria {}
        RowLayout {
            spacing: 10
            Layout.fillWidth: true
            Layout.margins: 10
            Texto {
                text: panel.explorador.cuenta
                color: Tema.secundario
                font.pixelSize: Tema.leyenda
            }
            Item { Layout.fillWidth: true }
            Texto {
                id: motivo
                visible: text !== ""
                text: panel.explorador.abrirFallo
                color: Tema.naranja
                font.pixelSize: Tema.leyenda
                Layout.fillWidth: true
                Layout.maximumWidth: implicitWidth + 1
                HoverHandler { id: sobreElFallo }
                Pista {
                    text: motivo.text
                    visible: motivo.truncated && sobreElFallo.hovered
                }
            }
            Item {
                visible: panel.explorador.abrirFallo !== ""
                Layout.fillWidth: true
            }
            Boton {
                text: "Recuperar todo"
                onClicked: Qt.callLater(panel.explorador.recuperarTodo)
            }
            BotonDestacado {
                text: panel.explorador.rotuloRecuperar
                porTecla: false
                enabled: panel.explorador.hayElegidas
                onClicked: Qt.callLater(panel.explorador.recuperarElegidas)
            }
        }
    }
}
