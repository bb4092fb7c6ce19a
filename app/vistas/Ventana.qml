import QtQuick
import QtQuick.Controls.Fusion
import QtQuick.Layouts
import Orcalin

ApplicationWindow {
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
    // The style brings a light palette of its own; ours is the desktop's.
    palette {
        alternateBase: Tema.paleta.alternateBase
        base: Tema.paleta.base
        button: Tema.paleta.button
        buttonText: Tema.paleta.buttonText
        dark: Tema.paleta.dark
        highlight: Tema.paleta.highlight
        highlightedText: Tema.paleta.highlightedText
        light: Tema.paleta.light
        mid: Tema.paleta.mid
        midlight: Tema.paleta.midlight
        placeholderText: Tema.secundario
        shadow: Tema.paleta.shadow
        text: Tema.paleta.text
        toolTipBase: Tema.paleta.base
        toolTipText: Tema.paleta.text
        window: Tema.paleta.window
        windowText: Tema.paleta.windowText
    }

    onClosing: cierre => cierre.accepted = app.salida.pide()

    PanelSalida { salida: ventana.app.salida }

    Action {
        id: abrir
        text: "Abrir archivo…"
        shortcut: "Ctrl+O"
        onTriggered: Qt.callLater(ventana.app.abrirDialogo)
    }
    Action {
        id: salir
        text: "Salir"
        shortcut: "Ctrl+Q"
        onTriggered: ventana.close()
    }

    menuBar: MenuBar {
        id: menus
        delegate: MenuBarItem {
            Accessible.role: Accessible.MenuItem
            Accessible.name: menu.title.replace("&", "")
        }
        MenuConNombre {
            title: "&Archivo"
            MenuItem { action: abrir }
            MenuSeparator {}
            MenuItem { action: salir }
        }
    }

    header: ToolBar {
        id: barra
        visible: ventana.explorando
        ToolButton {
            id: guardarAlgo
            Accessible.name: text
            Accessible.onPressAction: clicked()
            text: "Guardar algo"
            onClicked: ventana.app.guardarAlgo()
            contentItem: RowLayout {
                spacing: 6
                ImagenSistema { nombre: "plus"; lado: 16; tinte: Tema.texto }
                Texto { text: guardarAlgo.text; Accessible.ignored: true }
            }
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
