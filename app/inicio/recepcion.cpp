#include "recepcion.h"

#include "delegado.h"
#include "lugares/ruta.h"

namespace {

QList<QUrl> ficheros(const QStringList &uris) {
    QList<QUrl> urls;
    for (const QString &uri : uris) {
        if (const auto url = ruta::deUri(uri))
            urls.append(*url);
    }
    return urls;
}

} // namespace

Recepcion::Recepcion()
    : m_servicios([this](const Ficha &ficha) { emit alFrente(ficha); }) {}

std::optional<QString> Recepcion::atiende(const Peticion &peticion) {
    switch (peticion.que) {
    case Peticion::Que::Comprimir:
        return m_servicios.comprimir(peticion.uris, peticion.ficha);
    case Peticion::Que::Abrir:
        return m_servicios.abrir(peticion.uris, peticion.ficha);
    case Peticion::Que::Salir:
        emit salir();
        break;
    case Peticion::Que::Ficheros:
        Delegado::application(ficheros(peticion.uris));
        [[fallthrough]];
    case Peticion::Que::Activar:
        emit alFrente(peticion.ficha);
    }
    return std::nullopt;
}
