#pragma once

#include <QString>

/// The application as the desktop knows it: the name of its desktop file.
inline QString identidad() {
    return QStringLiteral("es.orcalin.Orcalin");
}
