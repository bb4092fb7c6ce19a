#include "cliente.h"

#include "aviso.h"
#include "entrega.h"
#include "inicio/servicios.h"

#include <QCoreApplication>
#include <QProcess>

#include <cstdio>

namespace {

using namespace std::chrono_literals;

// The bus gives a program that it starts as long.
constexpr auto kPlazo = 25s;

bool abrir(const Peticion &peticion) {
    return peticion.que == Peticion::Que::Abrir;
}

bool arranca(const Peticion &peticion) {
    QProcess aplicacion;
    aplicacion.setProgram(QCoreApplication::applicationFilePath());
    aplicacion.setArguments(
        QStringList{QStringLiteral("--atiende"),
                    abrir(peticion) ? QStringLiteral("abrir") : QStringLiteral("comprimir")} +
        peticion.uris);
    // Whoever reads what this process says would wait for the application.
    aplicacion.setStandardOutputFile(QProcess::nullDevice());
    aplicacion.setStandardErrorFile(QProcess::nullDevice());
    return aplicacion.startDetached();
}

// None when all is well.
QString fallo(const Peticion &peticion) {
    const bus::Entrega entrega = bus::entrega(peticion, bus::Arranque::Si, kPlazo);
    switch (entrega.fin) {
    case bus::Entrega::Fin::Hecha:
        return {};
    case bus::Entrega::Fin::Rechazada:
        return entrega.texto;
    case bus::Entrega::Fin::NoContesta:
        return QStringLiteral("Orcalin no contesta.");
    case bus::Entrega::Fin::Nadie:
        break;
    }
    // The rules are the same here; what is to be done is left to the other.
    if (const auto reparo = abrir(peticion) ? Servicios::reparoAAbrir(peticion.uris)
                                            : Servicios::reparoAComprimir(peticion.uris))
        return *reparo;
    return arranca(peticion) ? QString() : QStringLiteral("No pude arrancar Orcalin.");
}

} // namespace

int bus::cliente(const Peticion &peticion) {
    const QString texto = fallo(peticion);
    if (texto.isEmpty())
        return EXIT_SUCCESS;
    quejate(texto);
    return EXIT_FAILURE;
}

void bus::quejate(const QString &texto) {
    (void)std::fprintf(stderr, "%s\n", qUtf8Printable(texto));
    avisa(texto);
}
