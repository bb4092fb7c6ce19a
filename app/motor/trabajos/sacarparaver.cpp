#include "encargos.h"
#include "lugares/copias.h"
#include "lugares/espacio.h"
#include "lugares/ruta.h"
#include "textos/lineas.h"

namespace {

using Hecho = std::function<void(const Lectura<QUrl> &)>;

class Vista : public Encargo {
public:
    Vista(QUrl archivo, QString ruta, qint64 bytes, std::optional<QString> contrasena, Hecho hecho,
          EspacioLibre libre)
        : Encargo({.obra = Obra::Ver, .empieza = Empieza::EnFondo, .exito = Exito::HayAlgo},
                  std::move(archivo), std::move(contrasena))
        , m_ruta(std::move(ruta))
        , m_bytes(bytes)
        , m_hecho(std::move(hecho))
        , m_libre(std::move(libre)) {}

    std::optional<QString> antes() override {
        return faltaEspacio(QStringLiteral("Para abrirlo"), m_bytes, m_libre);
    }
    std::variant<Argumentos, QString> paso(qsizetype) override {
        const auto carpeta = copias::nuevaCarpeta(copias::carpeta());
        if (!carpeta)
            return copias::sinCarpeta();
        m_carpeta = *carpeta;
        return extraccion(m_carpeta, m_ruta);
    }
    bool hay(qsizetype) override {
        m_copia = copias::busca(m_carpeta, m_ruta.toUtf8());
        return m_copia.has_value();
    }
    QString queja(qsizetype, const QByteArray &error) override {
        return lineas::primerError(lineas::texto(error),
                                   QStringLiteral("No se pudo abrir «%1».").arg(m_ruta));
    }
    estados::Estado acaba(const std::optional<QString> &fallo, double segundos) override {
        if (fallo) {
            m_hecho(fallos::Otro{*fallo});
            return estados::Error{*fallo};
        }
        copias::protege(*m_copia);
        const QUrl url = ruta::url(*m_copia);
        m_hecho(url);
        return estados::Hecho{m_bytes, m_bytes, segundos, url};
    }

private:
    const QString m_ruta;
    const qint64 m_bytes;
    const Hecho m_hecho;
    const EspacioLibre m_libre;
    QByteArray m_carpeta;
    std::optional<QByteArray> m_copia;
};

} // namespace

encargos::Nuevo encargos::sacarParaVer(QUrl archivo, QString ruta, qint64 bytes,
                                       Contrasena contrasena, Hecho hecho, EspacioLibre libre) {
    return std::make_unique<Vista>(std::move(archivo), std::move(ruta), bytes,
                                   std::move(contrasena), std::move(hecho), std::move(libre));
}
