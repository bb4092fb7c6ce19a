#pragma once

#include "lugares/espacio.h"

#include <QList>
#include <QObject>
#include <QStringList>
#include <QUrl>

#include <memory>
#include <optional>

class EnMarcha;
class Trabajo;

/// Entries on their way out of an archive to another program: each is taken out
/// into a folder of its own below the private one of the copies, with the
/// permissions that it has in the archive; one run of the engine each, one
/// after the other. Nothing waits for the engine.
///
/// Destroying it ends the engine, and the copies go with it unless they were
/// kept: those stay until `Motor::limpiaTemporales`. Main thread only.
class Saque : public QObject {
    Q_OBJECT

public:
    enum class Fase { Sacando, Listo, Fallido };

    /// `rutas` as listed, folders with all below them, at least one; no other
    /// may lie below a folder among them. `bytes`: what they need together, at
    /// most 2^61. A missing or empty password means none.
    /// `enMarcha` lists it meanwhile, and must outlive it.
    Saque(QUrl archivo, QStringList rutas, qint64 bytes, std::optional<QString> contrasena,
          EnMarcha &enMarcha);
    ~Saque() override;

    /// Starts, once. A failure is told during the call when there is no engine
    /// or no room (as for viewing; `libre` tells), and ends the whole.
    void empieza(const EspacioLibre &libre = espacioLibre);

    [[nodiscard]] Fase fase() const { return m_fase; }
    /// Why it failed, for the user; empty when it has not.
    [[nodiscard]] const QString &fallo() const { return m_fallo; }

    /// Where the copies are, once `Listo`. Before that where they will be; then
    /// an engine that does not escape names may prove one of them wrong, if a
    /// name looks escaped. Empty before the start and after a failure.
    [[nodiscard]] QList<QUrl> urls() const;

    /// The copies are somebody's: they stay.
    void conserva();

signals:
    /// It has left `Sacando`; once.
    void acabado();

private:
    struct Restos; // what must go in the end, whoever is last to use it
    class Tarea;

    void acaba(const QString &fallo);

    const QUrl m_archivo;
    const QStringList m_rutas;
    const qint64 m_bytes;
    const std::optional<QString> m_contrasena;
    EnMarcha &m_enMarcha;
    Fase m_fase = Fase::Sacando;
    QString m_fallo;
    std::shared_ptr<Restos> m_restos;
    std::shared_ptr<Trabajo> m_trabajo;
    QList<QByteArray> m_copias; // those that are out
};
