#pragma once

#include "puertos/ficha.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

/// The services that other programs send a selection of files to.
///
/// Each takes the texts as they were sent, which must all be file URIs, and
/// returns at once: an error text for the caller, and then nothing changes, or
/// none. What there is to do is done on the main thread afterwards. Call them
/// there too.
class Servicios {
public:
    using AlFrente = std::function<void(const Ficha &)>;

    /// `alFrente` brings the application to the front.
    explicit Servicios(AlFrente alFrente);

    /// Puts all of them on the compression screen, archives too, in that order.
    [[nodiscard]] std::optional<QString> comprimir(const QStringList &uris,
                                                   const Ficha &ficha = {}) const;

    /// Shows the first archive among them.
    [[nodiscard]] std::optional<QString> abrir(const QStringList &uris,
                                               const Ficha &ficha = {}) const;

    /// What they would answer, without doing it. Any thread.
    [[nodiscard]] static std::optional<QString> reparoAComprimir(const QStringList &uris);
    [[nodiscard]] static std::optional<QString> reparoAAbrir(const QStringList &uris);

private:
    AlFrente m_alFrente;
};
