#include "encargo.h"

#include "lugares/ruta.h"

Encargo::Encargo(Reglas reglas, QUrl archivo, std::optional<QString> contrasena)
    : m_reglas(reglas)
    , m_archivo(std::move(archivo))
    , m_contrasena(std::move(contrasena)) {}

Encargo::~Encargo() = default;

QString Encargo::sinMotor() const {
    return QStringLiteral("No encuentro el motor.");
}

QString Encargo::noArranca(int) const {
    return QStringLiteral("No pude arrancar el motor.");
}

QList<estados::Trabajando> Encargo::lee(const QByteArray &, double) const {
    return {};
}

bool Encargo::hay(qsizetype) {
    return true;
}

std::optional<QString> Encargo::recibe(const QByteArray &) {
    return std::nullopt;
}

QString Encargo::noCabe() const {
    return {};
}

std::optional<estados::Trabajando> Encargo::tras(qsizetype) const {
    return std::nullopt;
}

void Encargo::remata(bool) {}

Encargo::Argumentos Encargo::extraccion(const QByteArray &destino,
                                        const std::optional<QString> &entrada) const {
    Argumentos argumentos{"extract", ruta::nativa(m_archivo), "-o", destino};
    if (entrada)
        argumentos << "--file" << entrada->toUtf8();
    return argumentos;
}
