#include "delegado.h"

#include "abierto.h"
#include "lugares/ruta.h"
#include "motor/motor.h"
#include "sistema/hilos.h"

#include <algorithm>

Delegado::Delegado(std::unique_ptr<ProveedorDeServicios> servicios)
    : m_servicios(std::move(servicios)) {}

void Delegado::applicationDidFinishLaunching(const std::function<bool()> &sigue) {
    if (m_servicios) {
        m_servicios->registra();
        m_servicios->refresca();
    }
    if (sigue())
        Motor::limpiaTemporales();
}

void Delegado::application(const QList<QUrl> &open) {
    const auto archivo = std::find_if(open.begin(), open.end(), ruta::esArchivo);
    if (archivo == open.end())
        return;
    enPrincipal([url = *archivo] { Abierto::compartido().ponArchivo(url); });
}
