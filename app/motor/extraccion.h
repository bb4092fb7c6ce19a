#pragma once

#include "proceso.h"

#include <QString>
#include <QUrl>

#include <optional>

/// One run of the engine that takes something out of an archive.
struct Extraccion {
    QUrl motor;
    QUrl archivo;
    QByteArray destino; ///< path of the folder that it extracts into
    QByteArray clave;   ///< path of the password file, empty without one

    /// The run for one entry, as listed, or for everything. Any thread.
    [[nodiscard]] Proceso::Orden orden(const std::optional<QString> &entrada) const;
};
