#include "servicios.h"

#include "abierto.h"
#include "lugares/ruta.h"
#include "sistema/hilos.h"

#include <algorithm>

namespace {

// Nothing when a single one of them is no file.
QList<QUrl> lee(const QStringList &uris) {
    QList<QUrl> urls;
    for (const QString &uri : uris) {
        const auto url = ruta::deUri(uri);
        if (!url)
            return {};
        urls.append(*url);
    }
    return urls;
}

std::optional<QUrl> primerArchivo(const QStringList &uris) {
    const QList<QUrl> urls = lee(uris);
    const auto archivo = std::find_if(urls.begin(), urls.end(), ruta::esArchivo);
    return archivo == urls.end() ? std::nullopt : std::optional(*archivo);
}

} // namespace

Servicios::Servicios(AlFrente alFrente)
    : m_alFrente(std::move(alFrente)) {}

std::optional<QString> Servicios::reparoAComprimir(const QStringList &uris) {
    if (lee(uris).isEmpty())
        return QStringLiteral("No he recibido ningún archivo.");
    return std::nullopt;
}

std::optional<QString> Servicios::reparoAAbrir(const QStringList &uris) {
    if (!primerArchivo(uris))
        return QStringLiteral("Eso no es un archivo .okz.");
    return std::nullopt;
}

std::optional<QString> Servicios::comprimir(const QStringList &uris, const Ficha &ficha) const {
    if (auto reparo = reparoAComprimir(uris))
        return reparo;
    enPrincipal([alFrente = m_alFrente, urls = lee(uris), ficha] {
        alFrente(ficha);
        // First back to the compression screen: there the new list makes it a fresh one.
        Abierto::compartido().ponArchivo(std::nullopt);
        Abierto::compartido().ponAComprimir(urls);
    });
    return std::nullopt;
}

std::optional<QString> Servicios::abrir(const QStringList &uris, const Ficha &ficha) const {
    if (auto reparo = reparoAAbrir(uris))
        return reparo;
    enPrincipal([alFrente = m_alFrente, url = primerArchivo(uris), ficha] {
        alFrente(ficha);
        Abierto::compartido().ponArchivo(url);
    });
    return std::nullopt;
}
