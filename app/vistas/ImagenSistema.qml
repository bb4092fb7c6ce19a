import QtQuick

// One of the system images in one colour. What it means it says in words, too,
// where no text beside it does.
Item {
    id: imagen

    required property string nombre
    required property int lado
    property color tinte: Tema.secundario
    property string significado

    function hexadecimal(c: color): string {
        const dos = v => Math.round(v * 255).toString(16).padStart(2, "0");
        return dos(c.r) + dos(c.g) + dos(c.b);
    }

    implicitWidth: lado
    implicitHeight: lado
    Accessible.role: Accessible.Graphic
    Accessible.name: significado
    Accessible.ignored: significado === ""

    Image {
        anchors.fill: parent
        sourceSize: Qt.size(imagen.lado * Screen.devicePixelRatio,
                            imagen.lado * Screen.devicePixelRatio)
        source: "image://sistema/" + imagen.nombre + "/" + imagen.hexadecimal(imagen.tinte)
        Accessible.ignored: true
    }
}
