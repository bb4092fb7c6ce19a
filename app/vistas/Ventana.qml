import QtQuick
import QtQuick.Templates as T
import Orcalin

T.ApplicationWindow {
    id: ventana

    required property OrcalinApp app
    readonly property bool explorando: app.explorador !== null

    objectName: "principal"
    title: "orcalin"
    width: 560
    height: 460 + menus.height
    minimumWidth: explorando ? 560 : 460
    minimumHeight: (explorando ? 420 + barra.height : 380) + menus.height
    font.pixelSize: Tema.cuerpo
    color: Tema.paleta.window

    onClosing: cierre => cierre.accepted = app.salida.pide()

    PanelSalida { salida: ventana.app.salida }

    T.Action {
        id: abrir
        text: "Abrir archivo…"
        shortcut: "Ctrl+O"
        onTriggered: Qt.callLater(ventana.app.abrirDialogo)
    }
    T.Action {
        id: salir
        text: "Salir"
        shortcut: "Ctrl+Q"
        onTriggered: ventana.close()
    }

    menuBar: BarraDeMenus {
        id: menus
        MenuConNombre {
            title: "&Archivo"
            EntradaDeMenu { action: abrir }
            T.MenuSeparator {
                padding: 3
                implicitHeight: implicitContentHeight + topPadding + bottomPadding
                contentItem: Divisoria {}
            }
            EntradaDeMenu { action: salir }
        }
    }

    header: T.ToolBar {
        id: barra
        visible: ventana.explorando
        implicitHeight: contentHeight + topPadding + bottomPadding
        padding: 4
        contentHeight: guardarAlgo.implicitHeight
        background: Divisoria { y: barra.height - height }
        BotonDeBarra {
            id: guardarAlgo
            nombre: "plus"
            text: "Guardar algo"
            onClicked: ventana.app.guardarAlgo()
        }
    }

    Loader {
        anchors.fill: parent
        focus: true
        sourceComponent: ventana.explorando ? explorador : pantalla
    }
    Component {
        id: pantalla
        // A fresh screen is drawn afresh, even when it follows another one.
        Repeater {
            model: ventana.app.pantalla === null ? [] : [ventana.app.pantalla]
            PantallaVista {
                required property Pantalla modelData
                pantalla: modelData
                anchors.fill: parent
            }
        }
    }
    Component {
        id: explorador
        Repeater {
            model: ventana.app.explorador === null ? [] : [ventana.app.explorador]
            ExploradorVista {
                required property Explorador modelData
                explorador: modelData
                anchors.fill: parent
            }
        }
    }
}
