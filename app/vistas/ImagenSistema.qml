import QtQuick
import QtQuick.Window

// One of the system images in one colour. It never carries a meaning alone.
Image {
    required property string nombre
    required property int lado
    property color tinte: Tema.secundario

    function hexadecimal(c: color): string {
        const dos = v => Math.round(v * 255).toString(16).padStart(2, "0");
        return dos(c.r) + dos(c.g) + dos(c.b);
    }

    width: lado
    height: lado
    sourceSize: Qt.size(lado * Screen.devicePixelRatio, lado * Screen.devicePixelRatio)
    source: "image://sistema/" + nombre + "/" + hexadecimal(tinte)
    Accessible.ignored: true
}
