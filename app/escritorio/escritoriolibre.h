#pragma once

#include "escritorio.h"

#include <QDir>

/// The desktop by the freedesktop conventions: Qt's file panels and the file
/// manager's D-Bus interface.
class EscritorioLibre : public Escritorio {
public:
    EscritorioLibre();

    QList<QUrl> eligeOrigenes() override;
    std::optional<QUrl> eligeDestino(const QString &nombre) override;
    std::optional<QUrl> eligeArchivo() override;
    std::optional<QUrl> eligeCarpeta(const QString &mensaje) override;
    [[nodiscard]] QString textoDeBytes(qint64 bytes) const override;

    bool abre(const QUrl &url) override;

    /// Asks the file manager without waiting for it; when none answers in two
    /// seconds, the folder is opened instead.
    void revela(const QUrl &url) override;

private:
    QString m_carpeta; // where the last panel was left
};
