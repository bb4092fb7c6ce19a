import QtQuick

// A caption: small, grey, as many lines as it needs.
Texto {
    color: Tema.secundario
    font.pixelSize: Tema.leyenda
    elide: Text.ElideNone
    wrapMode: Text.Wrap
    maximumLineCount: 4
}
