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

} // namespace

Servicios::Servicios(AlFrente alFrente)
    : m_alFrente(std::move(alFrente)) {}

std::optional<QString> Servicios::comprimir(const QStringList &uris, const Ficha &ficha) const {
    const QList<QUrl> urls = lee(uris);
    if (urls.isEmpty())
        return QStringLiteral("No he recibido ningún archivo.");
    enPrincipal([alFrente = m_alFrente, urls, ficha] {
        alFrente(ficha);
        // First back to the compression screen: there the new list makes it a fresh one.
        Abierto::compartido().ponArchivo(std::nullopt);
        Abierto::compartido().ponAComprimir(urls);
    });
    return std::nullopt;
}

std::optional<QString> Servicios::abrir(const QStringList &uris, const Ficha &ficha) const {
    const QList<QUrl> urls = lee(uris);
    const auto archivo = std::find_if(urls.begin(), urls.end(), ruta::esArchivo);
    if (archivo == urls.end())
        return QStringLiteral("Eso no es un archivo .okz.");
    enPrincipal([alFrente = m_alFrente, url = *archivo, ficha] {
        alFrente(ficha);
        Abierto::compartido().ponArchivo(url);
    });
    return std::nullopt;
}
