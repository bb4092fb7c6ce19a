#pragma once

#include "peticion.h"
#include "servicios.h"

#include <QObject>

/// Where everything that the application is asked for comes in, whichever way.
/// Main thread only.
class Recepcion : public QObject {
    Q_OBJECT

public:
    Recepcion();

    [[nodiscard]] const Servicios &servicios() const { return m_servicios; }

    /// Sees to it; what changes, changes shortly after this returns. Gives the
    /// error text for whoever asked, or none.
    std::optional<QString> atiende(const Peticion &peticion);

signals:
    void alFrente(const Ficha &ficha);
    void salir();

private:
    Servicios m_servicios;
};
