#pragma once

#include <QString>
#include <QUrl>

#include <optional>
#include <variant>

/// The states of an engine job; `Motor::Estado` is one of them. Equal when the
/// case and every value are.
namespace estados {

/// A job is running.
struct Trabajando {
    double pct = 0;                 ///< fraction done, 0 to 1
    QString detalle;                ///< a short line for the user
    std::optional<double> restante; ///< estimated seconds to go, when known
    bool operator==(const Trabajando &) const = default;
};

/// The job ended well.
struct Hecho {
    qint64 entrada = 0;  ///< bytes before
    qint64 salida = 0;   ///< bytes after
    double segundos = 0; ///< elapsed since the job started
    QUrl ruta;           ///< where the result lies
    bool operator==(const Hecho &) const = default;
};

/// The job failed or could not start.
struct Error {
    QString texto; ///< the complete message for the user
    bool operator==(const Error &) const = default;
};

/// No job, or the last one was cancelled.
struct Reposo {
    bool operator==(const Reposo &) const = default;
};

using Estado = std::variant<Trabajando, Hecho, Error, Reposo>;

} // namespace estados
