#pragma once

#include "lugares/espacio.h"
#include "textos/entradas.h"
#include "textos/estado.h"
#include "textos/falloalleer.h"
#include "trabajos/enmarcha.h"

#include <QList>
#include <QObject>
#include <QUrl>

#include <functional>
#include <memory>
#include <optional>
#include <variant>

class Encargo;

/// The engine driver: finds the engine, runs jobs on it as child processes and
/// publishes the state of the last one. Each screen owns one.
///
/// Lives on the main thread, and `estado` is written there only; work done on
/// other threads is posted to it. What arrives for a Motor that is gone is
/// dropped, and its child runs on to its end; EnMarcha tells how a compression or
/// an extraction into a folder ended.
class Motor : public QObject {
    Q_OBJECT

public:
    using Trabajando = estados::Trabajando;
    using Hecho = estados::Hecho;
    using Error = estados::Error;
    using Reposo = estados::Reposo;
    using Estado = estados::Estado;

    /// The entries of an archive, and the place of a copy of one.
    using Listado = Lectura<QList<Entrada>>;
    using Copia = Lectura<QUrl>;

    /// `enMarcha` lists what this one starts, and must outlive it; the operations
    /// of the type use the one of the process.
    explicit Motor(EnMarcha &enMarcha = EnMarcha::todos(), QObject *padre = nullptr);
    ~Motor() override;

    [[nodiscard]] const Estado &estado() const { return m_estado; }

    /// Publishes a state; every call notifies, also with an equal one. The
    /// owning screen dismisses a finished job with `Reposo`.
    void ponEstado(Estado estado);

    /// The engine's executable, or none (see buscaBinario). Any thread.
    static std::optional<QUrl> binario();

    /// Removes the folder of copies extracted for viewing, "orcalin-ver" in the
    /// temporary folder: it is out of the way when this returns, and what it
    /// held goes in the background. Never fails visibly. Any thread.
    static void limpiaTemporales();

    /// Bytes of a file, or of the regular files below a folder; 0 for what
    /// cannot be read. Blocks. Any thread.
    static qint64 tamano(const QUrl &de);

    /// Asks the running compression to end, if there is one, and publishes
    /// `Reposo` at once. Nothing is deleted. The child's end is still handled,
    /// and its final state replaces `Reposo`.
    void cancelar();

    /// Packs `origenes`, in that order, into the archive `destino`. `maximo`:
    /// as small as the engine can. A missing or empty password means no
    /// encryption. Everything the caller learns comes through `estado`; the
    /// first state is published before this returns. The sources are measured
    /// during the call. Without sources nothing happens.
    void comprimir(const QList<QUrl> &origenes, const QUrl &destino, bool maximo,
                   const std::optional<QString> &contrasena);

    /// Lists an archive. A missing or empty password means none. The entries
    /// stand in the engine's order, none removed; an archive without any gives
    /// an empty list.
    ///
    /// Blocks until the engine has ended, for ever with an engine that hangs
    /// (Proceso::terminaTodos ends it). Any thread but the main one, which must
    /// not wait; several at once. No `estado` changes.
    ///
    /// More than 5,000,000 entries, or 1 GiB of what the engine prints, are a
    /// `fallos::Otro`.
    static Listado listar(const QUrl &archivo, const std::optional<QString> &contrasena);

    /// The same, packed: for a million entries half the time and a quarter of the
    /// memory.
    static Lectura<Entradas> listarEnPoco(const QUrl &archivo,
                                          const std::optional<QString> &contrasena);

    /// Takes the entries `rutas`, as listed, out of the archive into the folder
    /// `destino`, one run of the engine each, in that order and in the
    /// background; the first failure ends the job, and what was taken out stays.
    /// An empty list means everything. Reports like `comprimir`; nothing stops
    /// it, `cancelar` neither. The folder is measured on the main thread at the
    /// end, and its size, with what it held before, given as both sizes.
    void recuperarVarios(const QUrl &archivo, const QUrl &destino, const QStringList &rutas,
                         const std::optional<QString> &contrasena);

    /// The same in a single run: `patron`, one entry or what the engine takes
    /// for several, or everything without it.
    void recuperar(const QUrl &archivo, const QUrl &destino, const std::optional<QString> &patron,
                   const std::optional<QString> &contrasena);

    /// Takes the entry `ruta` (`bytes` long, both as listed) out of the archive
    /// into a new private folder below the temporary one and makes the copy
    /// read-only. The copy stays until `limpiaTemporales`.
    ///
    /// `hecho` is called once: during the call when there is no engine or no
    /// room (`bytes` + 100 MiB must be free; `libre` tells, unknown means no
    /// check), otherwise later on the main thread. It gets the copy's place or
    /// a `fallos::Otro`, never `PideContrasena`. Success is that the copy is
    /// there, whatever the engine says. When the folder of all copies cannot be
    /// made, or what has its name is not this user's alone, the engine is not
    /// run, and that is a failure too.
    ///
    /// Call it on the main thread. No `estado` changes, nothing stops it.
    /// `bytes` so large that the sum does not fit into 64 bits ends the process.
    static void sacarParaVer(const QUrl &archivo, const QString &ruta, qint64 bytes,
                             const std::optional<QString> &contrasena,
                             std::function<void(const Copia &)> hecho,
                             const EspacioLibre &libre = espacioLibre);

signals:
    /// `estado` was assigned.
    void estadoCambia();

private:
    void empieza(std::unique_ptr<Encargo> encargo);

    EnMarcha &m_enMarcha;
    Estado m_estado = Reposo{};
    std::shared_ptr<Trabajo> m_compresion; // the last one, ended or not
};
