#pragma once

#include <QList>
#include <QString>
#include <QUrl>

#include <functional>
#include <optional>

class Saque;
struct Ficha;

/// When the user is told something outside the window.
enum class Aviso {
    SiNoMira, ///< unless the application is in front, where it is to be seen
    Siempre,  ///< the window does not show it
};

/// What the desktop gives to the application. One implementation talks to the
/// real desktop; tests bring their own. Called on the main thread. The panels
/// are modal: they return when the user has answered, the window stays alive
/// meanwhile.
class Escritorio {
public:
    virtual ~Escritorio() = default;

    /// Lets the user choose files and folders, several at once and mixed.
    /// In the order of the panel; empty when cancelled.
    virtual QList<QUrl> eligeOrigenes() = 0;

    /// Lets the user say where to save; `nombre` is proposed. None when
    /// cancelled. The user has agreed to replace what is there.
    virtual std::optional<QUrl> eligeDestino(const QString &nombre) = 0;

    /// Lets the user choose one archive. None when cancelled.
    virtual std::optional<QUrl> eligeArchivo() = 0;

    /// Lets the user choose a folder to take something out into; `mensaje` says
    /// what for. None when cancelled.
    virtual std::optional<QUrl> eligeCarpeta(const QString &mensaje) = 0;

    /// Cancels the panels that are open: what they ask for is not wanted any
    /// more.
    virtual void cierraPaneles() = 0;

    /// A byte count for the user, in the locale's number format.
    [[nodiscard]] virtual QString textoDeBytes(qint64 bytes) const = 0;

    /// Opens a file with its default application. `siNo` is called when the
    /// desktop says that it cannot: during the call, or soon after.
    virtual void abre(const QUrl &url, std::function<void()> siNo) = 0;

    /// Shows a file or folder selected in the file manager. `siNo` likewise.
    virtual void revela(const QUrl &url, std::function<void()> siNo) = 0;

    /// How far the job that the user waits for is, 0 to 1, for those who look at
    /// the dock or the task bar instead of the window; none: there is no job.
    virtual void avanza(std::optional<double> parte) = 0;

    /// Tells how a job has ended. Plain text.
    virtual void avisa(Aviso cuando, const QString &titulo, const QString &texto) = 0;

    /// What to do when the user answers such a notice: come to the front, by
    /// what the desktop gave for it.
    virtual void alVolver(std::function<void(const Ficha &ficha)> hacer) = 0;

    /// Lets the mouse, whose button is held, carry what is being taken out to
    /// another program, with `rotulo` beside the pointer. Returns when the mouse
    /// has let go of it, the window alive meanwhile; what is dropped before it
    /// is all there is handed over later. True when another program took it, as
    /// a copy: then the files are to stay, for it may need them any time after.
    virtual bool arrastra(Saque &saque, const QString &rotulo) = 0;
};
