#pragma once

#include <QList>
#include <QString>
#include <QUrl>

#include <optional>

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

    /// A byte count for the user, in the locale's number format.
    [[nodiscard]] virtual QString textoDeBytes(qint64 bytes) const = 0;

    /// Opens a file with its default application; false when the desktop says
    /// that it could not.
    virtual bool abre(const QUrl &url) = 0;

    /// Shows a file or folder selected in the file manager.
    virtual void revela(const QUrl &url) = 0;
};
