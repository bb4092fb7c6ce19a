import QtQuick

// A rounded rectangle as a path, `borde` inside the given size.
PathSvg {
    required property real ancho
    required property real alto
    required property real borde
    required property real radio

    readonly property real lados: Math.max(0, ancho - 2 * (borde + radio))
    readonly property real altos: Math.max(0, alto - 2 * (borde + radio))

    path: `M ${borde + radio} ${borde} h ${lados} a ${radio} ${radio} 0 0 1 ${radio} ${radio}`
        + ` v ${altos} a ${radio} ${radio} 0 0 1 ${-radio} ${radio} h ${-lados}`
        + ` a ${radio} ${radio} 0 0 1 ${-radio} ${-radio} v ${-altos}`
        + ` a ${radio} ${radio} 0 0 1 ${radio} ${-radio} z`
}
