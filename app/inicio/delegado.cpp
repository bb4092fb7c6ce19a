#include "delegado.h"

#include "abierto.h"
#include "lugares/ruta.h"
#include "motor/motor.h"
#include "sistema/hilos.h"

#include <algorithm>

Delegado::Delegado(std::unique_ptr<SistemaDeServicios> sistema)
    : m_sistema(std::move(sistema)) {}

void Delegado::applicationDidFinishLaunching(const std::function<bool()> &sigue) {
    if (m_sistema) {
        m_sistema->registra(m_recepcion);
        m_sistema->refresca();
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
