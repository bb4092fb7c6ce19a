#pragma once

#include "textos/estado.h"

#include <QPointer>

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

class Encargo;
class EnMarcha;
class FicheroDeClave;
class Proceso;

/// What a job of the engine is for.
enum class Obra { Guardar, Recuperar, Listar, Ver, Arrastrar };

/// One job of the engine: its runs one after the other, the password file as
/// long as they need it, the child in hand, its state, its end. What kind of job
/// it is, its Encargo says. Among the living (EnMarcha) from its start to its
/// end, whoever else holds it.
class Trabajo : public std::enable_shared_from_this<Trabajo> {
public:
    /// Takes every state of the job, in order, on the main thread. False when
    /// nobody is left to see it.
    using Publica = std::function<bool(const estados::Estado &)>;

    /// Held by a shared pointer. Without `publica` nobody needs to see how it
    /// goes.
    Trabajo(std::unique_ptr<Encargo> encargo, EnMarcha &vivos, Publica publica = {});
    ~Trabajo();
    Trabajo(const Trabajo &) = delete;
    Trabajo &operator=(const Trabajo &) = delete;

    /// Starts it, once, on the main thread; the runs that are left go on in the
    /// background. What can be told at once is published before this returns.
    /// False when it came to nothing before anything was to be run.
    bool empieza();

    /// Does it on this thread, which must not be the main one for long, and
    /// returns when it is at its end. Once, instead of `empieza`.
    void corre();

    /// Asks the child in hand to end; no other run starts. The job is at its end
    /// only when the child is. Main thread only.
    void cancela();

    [[nodiscard]] Obra obra() const { return m_obra; }
    [[nodiscard]] const QUrl &archivo() const { return m_archivo; }
    /// Main thread only.
    [[nodiscard]] const estados::Estado &estado() const { return m_estado; }
    [[nodiscard]] bool cancelado() const { return m_cancelado; }

private:
    std::optional<QString> impedimento();
    std::optional<QString> arrancaPaso();
    QString noArranca(int fallo);
    std::optional<QString> siguePaso();
    std::optional<QString> juzgaPaso(int estado, const QByteArray &salida, const QByteArray &error);
    std::optional<QString> haz();
    void remata(bool bien);
    void entrega(std::optional<QString> fallo);
    [[nodiscard]] estados::Estado acaba(const std::optional<QString> &fallo);

    [[nodiscard]] double segundos() const;
    bool ponEstado(const estados::Estado &estado);
    void cierra(const estados::Estado &final);

    const Obra m_obra;
    const QUrl m_archivo;

    // Main thread.
    QPointer<EnMarcha> m_vivos;
    Publica m_publica;
    estados::Estado m_estado;

    // Whoever runs it.
    std::unique_ptr<Encargo> m_encargo;
    QByteArray m_motor;
    std::unique_ptr<FicheroDeClave> m_clave;
    std::chrono::steady_clock::time_point m_inicio; // of the first run
    qsizetype m_hechos = 0;

    // Both.
    std::atomic<bool> m_cancelado = false;
    std::mutex m_cerrojo;
    std::unique_ptr<Proceso> m_hijo; // set and cleared with the lock by whoever runs it
};
