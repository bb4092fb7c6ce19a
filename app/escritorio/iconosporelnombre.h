#pragma once

#include <QFileIconProvider>
#include <QHash>
#include <QMimeDatabase>
#include <QMutex>

/// Icons and kinds of files for a file panel, by the endings of their names:
/// one look into the table of kinds for each ending. Qt's own takes all its
/// patterns to every name and opens the files whose name says nothing, on the
/// main thread: thousands of files without an ending stop the window. For any
/// thread; a panel asks from two.
class IconosPorElNombre : public QFileIconProvider {
public:
    using QFileIconProvider::icon;

    [[nodiscard]] QIcon icon(const QFileInfo &info) const override;

    /// What the desktop calls such files, in the user's language.
    [[nodiscard]] QString type(const QFileInfo &info) const override;

private:
    struct Clase {
        QIcon icono;
        QString nombre;
    };

    [[nodiscard]] Clase clase(const QString &terminacion) const;

    QMimeDatabase m_tabla;
    mutable QMutex m_cerrojo;
    mutable QHash<QString, Clase> m_clases;
};
