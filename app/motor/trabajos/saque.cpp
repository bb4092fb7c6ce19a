#include "saque.h"

#include "encargo.h"
#include "enmarcha.h"
#include "lugares/copias.h"
#include "lugares/ruta.h"
#include "sistema/hilos.h"
#include "textos/lineas.h"

#include <QPointer>

#include <atomic>
#include <sys/stat.h>

// The folder of this lot. The engine may still be writing when nobody wants the
// copies any more. So its job holds this as well, and the last to let go cleans
// up, in the background.
struct Saque::Restos {
    QByteArray carpeta; // empty until it is made
    std::atomic<bool> seQuedan = false;

    Restos() = default;
    Restos(const Restos &) = delete;
    Restos &operator=(const Restos &) = delete;
    ~Restos() {
        if (!carpeta.isEmpty() && !seQuedan)
            copias::limpia(carpeta);
    }

    // A folder each: nothing of one entry stands in the way of another, and no
    // link of one leads another astray.
    [[nodiscard]] QByteArray carpetaDe(qsizetype i) const {
        return carpeta + '/' + QByteArray::number(i + 1);
    }
};

class Saque::Tarea : public Encargo {
public:
    Tarea(Saque &saque, QUrl archivo, QStringList rutas, std::optional<QString> contrasena,
          std::function<std::optional<QString>()> falta)
        : Encargo({.obra = Obra::Arrastrar,
                   // A part of a file would pass for the whole: the engine must also say
                   // that all went well.
                   .exito = Exito::EstadoCeroYHay,
                   .dejaLaClaveSiNoArranca = false},
                  std::move(archivo), std::move(contrasena))
        , m_saque(&saque)
        , m_rutas(std::move(rutas))
        , m_falta(std::move(falta))
        , m_restos(saque.m_restos) {}

    std::optional<QString> antes() override {
        if (auto falta = m_falta())
            return falta;
        const auto carpeta = copias::nuevaCarpeta(copias::carpeta());
        if (!carpeta)
            return copias::sinCarpeta();
        m_restos->carpeta = *carpeta;
        return std::nullopt;
    }
    [[nodiscard]] qsizetype pasos() const override { return m_rutas.size(); }
    std::variant<Argumentos, QString> paso(qsizetype i) override {
        const QByteArray destino = m_restos->carpetaDe(i);
        (void)::mkdir(destino.constData(), S_IRWXU); // the engine says what is wrong
        return extraccion(destino, m_rutas[i]);
    }
    bool hay(qsizetype i) override {
        const auto copia =
            copias::busca(m_restos->carpetaDe(i), m_rutas[i].toUtf8(), copias::Enlaces::Tal);
        if (copia)
            enPrincipal([saque = m_saque, copia = *copia] {
                if (saque)
                    saque->m_copias.append(copia);
            });
        return copia.has_value();
    }
    QString queja(qsizetype i, const QByteArray &error) override {
        return lineas::primerError(lineas::texto(error),
                                   QStringLiteral("No se pudo sacar «%1».").arg(m_rutas[i]));
    }
    void remata(bool) override { m_restos.reset(); }
    estados::Estado acaba(const std::optional<QString> &fallo, double segundos) override {
        if (m_saque)
            m_saque->acaba(fallo.value_or(QString()));
        if (fallo)
            return estados::Error{*fallo};
        return estados::Hecho{0, 0, segundos, archivo()};
    }

private:
    const QPointer<Saque> m_saque; // looked at on the main thread only
    const QStringList m_rutas;
    const std::function<std::optional<QString>()> m_falta;
    std::shared_ptr<Restos> m_restos;
};

Saque::Saque(QUrl archivo, QStringList rutas, qint64 bytes, std::optional<QString> contrasena,
             EnMarcha &enMarcha)
    : m_archivo(std::move(archivo))
    , m_rutas(std::move(rutas))
    , m_bytes(bytes)
    , m_contrasena(std::move(contrasena))
    , m_enMarcha(enMarcha)
    , m_restos(std::make_shared<Restos>()) {}

Saque::~Saque() {
    if (m_trabajo)
        m_trabajo->cancela();
    enFondo([restos = std::move(m_restos)] {});
}

void Saque::empieza(const EspacioLibre &libre) {
    auto falta = [bytes = m_bytes, libre] {
        return faltaEspacio(QStringLiteral("Para arrastrarlo"), bytes, libre);
    };
    m_trabajo = std::make_shared<Trabajo>(
        std::make_unique<Tarea>(*this, m_archivo, m_rutas, m_contrasena, std::move(falta)),
        m_enMarcha);
    m_trabajo->empieza();
}

void Saque::acaba(const QString &fallo) {
    m_fallo = fallo;
    m_fase = fallo.isEmpty() ? Fase::Listo : Fase::Fallido;
    emit acabado();
}

QList<QUrl> Saque::urls() const {
    QList<QUrl> todas;
    if (m_restos->carpeta.isEmpty() || m_fase == Fase::Fallido)
        return todas;
    todas.reserve(m_rutas.size());
    for (qsizetype i = 0; i < m_rutas.size(); ++i)
        todas.append(ruta::url(
            i < m_copias.size() ? m_copias[i]
                                : copias::prevista(m_restos->carpetaDe(i), m_rutas[i].toUtf8())));
    return todas;
}

void Saque::conserva() {
    if (m_fase == Fase::Listo)
        m_restos->seQuedan = true;
}
