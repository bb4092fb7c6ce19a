import QtQuick
import QtQuick.Layouts

// One entry of an archive.
Rectangle {
    id: fila

    required property int index
    required property string nombre
    required property string carpeta
    required property string ruta
    required property string icono
    required property string tamano
    required property bool elegida
    required property bool abriendose
    required property bool esCarpeta
    required property string descripcion
    required property string fallo
    property bool actual: false

    readonly property color tinta: elegida ? Tema.sobreDestacado : Tema.texto
    readonly property color tintaSuave: elegida ? Tema.sobreDestacado : Tema.secundario

    signal pulsada(modificadores: int)
    signal abierta
    signal menuPedido(x: real, y: real)
    signal arrastrada

    color: {
        if (elegida)
            return Tema.destacado;
        if (raton.containsMouse)
            return Tema.acentoSuave;
        return index % 2 ? Tema.tenuisimo : "transparent";
    }
    border.width: actual ? 1 : 0
    border.color: elegida ? Tema.texto : Tema.acento

    Accessible.role: Accessible.ListItem
    Accessible.name: descripcion
    Accessible.description: abriendose ? "sacándose del archivo" : fallo
    Accessible.selectable: true
    Accessible.selected: elegida
    Accessible.focusable: true
    Accessible.onPressAction: pulsada(0)

    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: 12
        anchors.rightMargin: 12
        spacing: 8
        ImagenSistema {
            nombre: fila.icono
            lado: 16
            tinte: fila.tintaSuave
        }
        ColumnLayout {
            spacing: 0
            Layout.fillWidth: true
            Texto {
                id: titulo
                text: fila.nombre
                color: fila.tinta
                horizontalAlignment: Text.AlignLeft
                Accessible.ignored: true
                Layout.fillWidth: true
            }
            Texto {
                id: donde
                visible: text !== ""
                text: fila.carpeta
                color: fila.tintaSuave
                font.pixelSize: Tema.leyenda
                horizontalAlignment: Text.AlignLeft
                Accessible.ignored: true
                Layout.fillWidth: true
            }
        }
        Giro {
            visible: fila.abriendose
            running: visible
            tinte: fila.tinta
            Layout.preferredWidth: 18
            Layout.preferredHeight: 18
        }
        Texto {
            visible: text !== "" && !fila.abriendose
            text: fila.tamano
            color: fila.tintaSuave
            font.pixelSize: Tema.leyenda
            elide: Text.ElideNone
            Accessible.ignored: true
        }
    }

    // A mouse that is moved with the button held takes the row out of the
    // window; a finger scrolls the list, a mouse does that by wheel and bar.
    MouseArea {
        id: raton
        property point origen
        property bool llevada: false

        anchors.fill: parent
        hoverEnabled: true
        acceptedButtons: Qt.LeftButton | Qt.RightButton
        onPressed: evento => {
            preventStealing = evento.source === Qt.MouseEventNotSynthesized;
            origen = Qt.point(evento.x, evento.y);
            llevada = false;
        }
        onPositionChanged: evento => {
            const lejos = Math.abs(evento.x - origen.x) + Math.abs(evento.y - origen.y)
                >= Qt.styleHints.startDragDistance;
            if (!preventStealing || !(pressedButtons & Qt.LeftButton) || llevada || !lejos)
                return;
            llevada = true;
            fila.arrastrada();
        }
        onClicked: evento => {
            if (evento.button === Qt.RightButton)
                fila.menuPedido(evento.x, evento.y);
            else if (!llevada)
                fila.pulsada(evento.modifiers);
        }
        onDoubleClicked: evento => {
            if (evento.button === Qt.LeftButton)
                fila.abierta();
        }
    }

    Loader {
        active: raton.containsMouse && (titulo.truncated || donde.truncated)
        sourceComponent: Pista {
            parent: fila
            text: fila.ruta
            visible: true
        }
    }
}
