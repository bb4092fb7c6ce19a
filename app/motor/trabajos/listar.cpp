#include "encargos.h"
#include "lugares/ruta.h"
#include "textos/lineas.h"
#include "textos/listado.h"

namespace {

class ListadoDeArchivo : public Encargo {
public:
    ListadoDeArchivo(QUrl archivo, std::optional<QString> contrasena, Lectura<Entradas> &listado)
        : Encargo({.obra = Obra::Listar, .salida = kMaxBytesDeListado}, std::move(archivo),
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
    std::optional<QString> recibe(const QByteArray &salida) override {
        auto entradas = leeListado(salida);
        if (!entradas)
            return noCabe();
        m_listado = std::move(*entradas);
        return std::nullopt;
    }
    [[nodiscard]] QString noCabe() const override {
        return QStringLiteral("Este archivo tiene demasiados elementos para mostrarlos.");
    }
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
    Lectura<Entradas> &m_listado;
    bool m_pideContrasena = false;
};

} // namespace

encargos::Nuevo encargos::listar(QUrl archivo, Contrasena contrasena, Lectura<Entradas> &listado) {
    return std::make_unique<ListadoDeArchivo>(std::move(archivo), std::move(contrasena), listado);
}
