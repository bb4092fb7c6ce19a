#pragma once

#include <QList>
#include <QObject>
#include <QUrl>

#include <optional>

/// What the user has asked the application to work on; it decides which screen
/// the window shows. Main thread only.
class Abierto : public QObject {
    Q_OBJECT

public:
    /// The one instance of the process, made on first use.
    static Abierto &compartido();

    /// The archive that the window is showing; none: the compression screen.
    [[nodiscard]] const std::optional<QUrl> &archivo() const { return m_archivo; }
    void ponArchivo(std::optional<QUrl> archivo);

    /// Items handed in from outside to fill the compression screen with, in
    /// the order received. Nothing ever empties it.
    [[nodiscard]] const QList<QUrl> &aComprimir() const { return m_aComprimir; }
    void ponAComprimir(QList<QUrl> urls);

signals:
    /// A field is about to be written; who wants the new value looks later.
    void vaACambiar();

private:
    using QObject::QObject;

    std::optional<QUrl> m_archivo;
    QList<QUrl> m_aComprimir;
};
