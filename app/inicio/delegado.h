#pragma once

#include <QList>
#include <QUrl>

#include <memory>

/// How the application offers its services to other programs.
class ProveedorDeServicios {
public:
    virtual ~ProveedorDeServicios() = default;
    /// Makes the services callable.
    virtual void registra() = 0;
    /// Asks the system to read its service entries again.
    virtual void refresca() = 0;
};

/// What the application does when it starts and when it is given files to
/// open. Main thread only.
class Delegado {
public:
    /// Owns the services provider; none: there is nobody to offer services to.
    explicit Delegado(std::unique_ptr<ProveedorDeServicios> servicios = nullptr);

    /// The start-up steps, once: services, their refresh, old temporaries.
    void applicationDidFinishLaunching();

    /// Files were opened with the application. The first archive among them is
    /// shown, shortly after this returns; everything else is ignored.
    static void application(const QList<QUrl> &open);

private:
    std::unique_ptr<ProveedorDeServicios> m_servicios;
};
