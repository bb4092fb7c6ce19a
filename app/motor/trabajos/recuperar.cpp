#include "encargos.h"
#include "lugares/ruta.h"
#include "lugares/tamano.h"
#include "textos/lineas.h"

#include <algorithm>

namespace {

// Into a folder of the user's.
class Recuperacion : public Encargo {
public:
    Recuperacion(Reglas reglas, QUrl archivo, QUrl destino, std::optional<QString> contrasena)
        : Encargo(reglas, std::move(archivo), std::move(contrasena))
        , m_destino(std::move(destino)) {}

    estados::Estado acaba(const std::optional<QString> &fallo, double segundos) override {
        if (fallo)
            return estados::Error{*fallo};
        const qint64 bytes = pesoDe(ruta::nativa(m_destino));
        return estados::Hecho{bytes, bytes, segundos, m_destino};
    }

protected:
    [[nodiscard]] Argumentos de(const std::optional<QString> &entrada) const {
        return extraccion(ruta::nativa(m_destino), entrada);
    }

private:
    const QUrl m_destino;
};

class DeUnaVez : public Recuperacion {
public:
    DeUnaVez(QUrl archivo, QUrl destino, std::optional<QString> patron,
             std::optional<QString> contrasena)
        : Recuperacion({.obra = Obra::Recuperar}, std::move(archivo), std::move(destino),
                       std::move(contrasena))
        , m_patron(std::move(patron)) {}

    [[nodiscard]] estados::Trabajando alEmpezar() const override {
        return {0, m_patron ? QStringLiteral("recuperando…") : QStringLiteral("recuperando todo…"),
                std::nullopt};
    }
    std::variant<Argumentos, QString> paso(qsizetype) override { return de(m_patron); }
    QString queja(qsizetype, const QByteArray &error) override {
        return lineas::primerError(lineas::texto(error), QStringLiteral("No se pudo recuperar."));
    }

private:
    const std::optional<QString> m_patron;
};

class UnaTrasOtra : public Recuperacion {
public:
    UnaTrasOtra(QUrl archivo, QUrl destino, QStringList rutas, std::optional<QString> contrasena)
        : Recuperacion({.obra = Obra::Recuperar,
                        .empieza = Empieza::EnFondo,
                        .dejaLaClaveSiNoArranca = false},
                       std::move(archivo), std::move(destino), std::move(contrasena))
        , m_rutas(std::move(rutas)) {}

    [[nodiscard]] estados::Trabajando alEmpezar() const override { return *tras(0); }
    [[nodiscard]] qsizetype pasos() const override { return m_rutas.size(); }
    std::variant<Argumentos, QString> paso(qsizetype i) override { return de(m_rutas[i]); }
    QString queja(qsizetype i, const QByteArray &error) override {
        return lineas::primerError(lineas::texto(error),
                                   QStringLiteral("No se pudo recuperar «%1».").arg(m_rutas[i]));
    }
    // Names the entry in hand, while the fraction counts those that are done.
    [[nodiscard]] std::optional<estados::Trabajando> tras(qsizetype hechos) const override {
        const qsizetype total = m_rutas.size();
        return estados::Trabajando{
            static_cast<double>(hechos) / static_cast<double>(total),
            QStringLiteral("recuperando %1 de %2…").arg(std::min(hechos + 1, total)).arg(total),
            std::nullopt};
    }

private:
    const QStringList m_rutas;
};

} // namespace

encargos::Nuevo encargos::recuperar(QUrl archivo, QUrl destino, std::optional<QString> patron,
                                    Contrasena contrasena) {
    return std::make_unique<DeUnaVez>(std::move(archivo), std::move(destino), std::move(patron),
                                      std::move(contrasena));
}

encargos::Nuevo encargos::recuperarVarios(QUrl archivo, QUrl destino, QStringList rutas,
                                          Contrasena contrasena) {
    return std::make_unique<UnaTrasOtra>(std::move(archivo), std::move(destino), std::move(rutas),
                                         std::move(contrasena));
}
