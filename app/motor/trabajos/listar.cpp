#include "encargos.h"
#include "lugares/ruta.h"
#include "textos/lineas.h"
#include "textos/listado.h"

namespace {

class ListadoDeArchivo : public Encargo {
public:
    ListadoDeArchivo(QUrl archivo, std::optional<QString> contrasena,
                     Lectura<QList<Entrada>> &listado)
        : Encargo({.obra = Obra::Listar, .leeLaSalida = true}, std::move(archivo),
                  std::move(contrasena))
        , m_listado(listado) {}

    std::variant<Argumentos, QString> paso(qsizetype) override {
        return Argumentos{"list", ruta::nativa(archivo())};
    }
    // A complaint about a password counts before any line that says "Error": it
    // may stand in that very line.
    QString queja(qsizetype, const QByteArray &error) override {
        const QString dicho = lineas::texto(error);
        m_pideContrasena = dicho.contains(QStringLiteral("contraseña")) ||
                           dicho.contains(QStringLiteral("password"));
        return lineas::primerError(dicho, QStringLiteral("No se puede leer este archivo."));
    }
    void recibe(const QByteArray &salida) override { m_listado = leeListado(salida); }
    estados::Estado acaba(const std::optional<QString> &fallo, double segundos) override {
        if (!fallo)
            return estados::Hecho{0, 0, segundos, archivo()};
        if (m_pideContrasena)
            m_listado = fallos::PideContrasena{};
        else
            m_listado = fallos::Otro{*fallo};
        return estados::Error{*fallo};
    }

private:
    Lectura<QList<Entrada>> &m_listado;
    bool m_pideContrasena = false;
};

} // namespace

encargos::Nuevo encargos::listar(QUrl archivo, Contrasena contrasena,
                                 Lectura<QList<Entrada>> &listado) {
    return std::make_unique<ListadoDeArchivo>(std::move(archivo), std::move(contrasena), listado);
}
