#pragma once

#include "estado.h"

#include <QList>
#include <QObject>
#include <QUrl>

#include <memory>
#include <optional>
#include <variant>

class Proceso;

/// The engine driver: finds the engine, runs jobs on it as child processes and
/// publishes the state of the last one. Each screen owns one.
///
/// Lives on the main thread, and `estado` is written there only; work done on
/// other threads is posted to it. What arrives for a Motor that is gone is
/// dropped, and its child runs on to its end.
class Motor : public QObject {
    Q_OBJECT

public:
    using Trabajando = estados::Trabajando;
    using Hecho = estados::Hecho;
    using Error = estados::Error;
    using Reposo = estados::Reposo;
    using Estado = std::variant<Trabajando, Hecho, Error, Reposo>;

    explicit Motor(QObject *padre = nullptr);
    ~Motor() override;

    [[nodiscard]] const Estado &estado() const { return m_estado; }

    /// Publishes a state; every call notifies, also with an equal one. The
    /// owning screen dismisses a finished job with `Reposo`.
    void ponEstado(Estado estado);

    /// The engine's executable, looked for afresh at each call, or none. The
    /// first that exists and may be executed of: the bundle's own, the two
    /// usual places for programs, the "bin" of the home directory. Any thread.
    static std::optional<QUrl> binario();

    /// Removes the folder of copies extracted for viewing, "orcalin-ver" in the
    /// temporary folder. Never fails visibly. Any thread.
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

signals:
    /// `estado` was assigned.
    void estadoCambia();

private:
    struct Compresion;

    Estado m_estado = Reposo{};
    std::unique_ptr<Proceso> m_proceso; // the last compression's, ended or not
};
