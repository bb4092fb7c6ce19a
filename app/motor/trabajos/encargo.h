#pragma once

#include "trabajo.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QUrl>

#include <optional>
#include <variant>

/// What makes one kind of job different from the others: its runs of the
/// engine, and its words. A Trabajo owns it and does the rest.
///
/// On the thread that starts the job: `sinMotor`, `antes`, `alEmpezar`. On the
/// one that runs it, which may be another: `paso` to `remata`. At the end, on the
/// main thread: `acaba`; on the calling one with Trabajo::corre. Never two at a
/// time.
class Encargo {
public:
    using Argumentos = QList<QByteArray>;

    /// Where the first run starts.
    enum class Empieza {
        EnLaLlamada, ///< so that a failure to start it is told before that returns
        EnFondo,
    };

    /// When a run of the engine has gone well.
    enum class Exito {
        EstadoCero,
        HayAlgo,        ///< whatever it says, what it was for is there
        EstadoCeroYHay, ///< both
    };

    struct Reglas {
        Obra obra;
        Empieza empieza = Empieza::EnLaLlamada;
        Exito exito = Exito::EstadoCero;
        /// Bytes of standard output that are read, at most; 0: nobody reads it.
        qsizetype salida = 0;
        /// The engine tells on standard error how far it is: `lee` gets it.
        bool cuentaSuAvance = false;
        /// The password is to encrypt with.
        bool cifra = false;
        /// A run that could not be started leaves the password file where it is,
        /// for good. That is meant so.
        bool dejaLaClaveSiNoArranca = true;
        /// Motor::cancelar ends it, and the end that the child then comes to is
        /// the job's, like any other. A job without this can only be cancelled by
        /// itself, and then ends in `Reposo`.
        bool laCancelaElMotor = false;
    };

    /// `archivo`: what is made, or taken out of. A missing or empty password
    /// means none.
    Encargo(Reglas reglas, QUrl archivo, std::optional<QString> contrasena);
    virtual ~Encargo();
    Encargo(const Encargo &) = delete;
    Encargo &operator=(const Encargo &) = delete;

    [[nodiscard]] const Reglas &reglas() const { return m_reglas; }
    [[nodiscard]] const QUrl &archivo() const { return m_archivo; }
    [[nodiscard]] const std::optional<QString> &contrasena() const { return m_contrasena; }

    /// What to say when there is no engine, and when it cannot be started
    /// (`fallo`: an errno value).
    [[nodiscard]] virtual QString sinMotor() const;
    [[nodiscard]] virtual QString noArranca(int fallo) const;

    /// Once the engine is found: why the job cannot be done all the same.
    virtual std::optional<QString> antes() { return std::nullopt; }
    /// The job's first state.
    [[nodiscard]] virtual estados::Trabajando alEmpezar() const { return {}; }

    [[nodiscard]] virtual qsizetype pasos() const { return 1; }
    /// The arguments of a run, but for the password's, or why there is none.
    /// Gets ready what the run needs.
    virtual std::variant<Argumentos, QString> paso(qsizetype i) = 0;
    /// What a chunk of standard error says of the progress. `segundos`: since
    /// the job started.
    [[nodiscard]] virtual QList<estados::Trabajando> lee(const QByteArray &trozo,
                                                         double segundos) const;
    /// Whether what the run was for is there.
    virtual bool hay(qsizetype i);
    /// What to say of a run that went wrong.
    virtual QString queja(qsizetype i, const QByteArray &error) = 0;
    /// Takes what a run that went well has said on standard output; or why that
    /// will not do.
    virtual std::optional<QString> recibe(const QByteArray &salida);
    /// What to say of a run that said more there than is read.
    [[nodiscard]] virtual QString noCabe() const;
    /// The state after so many runs.
    [[nodiscard]] virtual std::optional<estados::Trabajando> tras(qsizetype hechos) const;
    /// The runs are over, all of them well or not.
    virtual void remata(bool bien);

    /// The job is at its end; `fallo`: why it failed. Returns its last state.
    virtual estados::Estado acaba(const std::optional<QString> &fallo, double segundos) = 0;

protected:
    /// The arguments that take one entry, as listed, or everything out of the
    /// archive into the folder `destino` (a path).
    [[nodiscard]] Argumentos extraccion(const QByteArray &destino,
                                        const std::optional<QString> &entrada) const;

private:
    const Reglas m_reglas;
    const QUrl m_archivo;
    const std::optional<QString> m_contrasena;
};
