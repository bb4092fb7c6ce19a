// Entries on their way out of the browser by the mouse; the rest of the browser
// is in explorador.cpp.
#include "escritorio/escritorio.h"
#include "explorador.h"
#include "motor/fondo.h"
#include "motor/principal.h"
#include "motor/saque.h"

#include <QPointer>

void Explorador::arrastrar(int fila) {
    if (std::exchange(m_arrastrando, true))
        return;
    ponAbrirFallo(std::nullopt);
    if (!m_filas.elegida(fila))
        m_filas.elige(fila);
    const auto indices = m_filas.indicesElegidos();
    m_filas.ponArrastradas(indices);
    const QString rotulo = indices.size() == 1 ? m_filas.entrada(fila).nombre()
                                               : QStringLiteral("%1 elementos").arg(indices.size());
    enFondo([esta = QPointer(this), contenido = m_filas.contenido(), indices, rotulo] {
        enPrincipal([esta, rotulo, raices = raicesDe(*contenido, indices)] {
            if (esta)
                esta->lleva(raices, rotulo);
        });
    });
}

void Explorador::lleva(const Raices &raices, const QString &rotulo) {
    const QPointer esta(this); // another archive may be opened meanwhile
    Saque saque(m_archivo, raices.rutas, raices.bytes, clave());
    connect(&saque, &Saque::acabado, this, [this] { m_filas.ponArrastradas({}); });
    saque.empieza();
    if (saque.fase() != Saque::Fase::Fallido && m_escritorio.arrastra(saque, rotulo))
        saque.conserva();
    if (!esta)
        return;
    m_arrastrando = false;
    m_filas.ponArrastradas({});
    if (!saque.fallo().isEmpty())
        ponAbrirFallo(saque.fallo());
}
