#pragma once

#include <QAbstractListModel>
#include <QList>
#include <QUrl>

#include <optional>

/// What is selected to be packed, a row each. What kind of thing one is, is
/// looked up when somebody asks first. Main thread only.
class Origenes : public QAbstractListModel {
    Q_OBJECT

public:
    enum Papel {
        Nombre = Qt::UserRole, ///< QString, the file name
        Icono,                 ///< QString, a system image's name
        Clase,                 ///< QString, what that shows, in a word
    };

    using QAbstractListModel::QAbstractListModel;

    void pon(QList<QUrl> urls);
    [[nodiscard]] const QList<QUrl> &urls() const { return m_urls; }

    /// A folder itself, not a link to one: that is packed as a link. False for
    /// what is not there, and for a row that is not.
    [[nodiscard]] bool esCarpeta(qsizetype fila) const;

    [[nodiscard]] int rowCount(const QModelIndex &padre = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &indice, int papel) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

private:
    QList<QUrl> m_urls;
    mutable QList<std::optional<bool>> m_carpetas; // none: not looked up yet
};
