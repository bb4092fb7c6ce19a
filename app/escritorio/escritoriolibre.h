#pragma once

#include "apariencia.h"
#include "iconosporelnombre.h"
#include "lanzador.h"
#include "notificaciones.h"
#include "puertos/escritorio.h"

#include <QDir>

class QFileDialog;

/// The desktop by the freedesktop conventions: Qt's file panels, and the D-Bus
/// interfaces of file manager, notifications, launcher and settings portal. As
/// long as it lives the application's colours follow the desktop's.
class EscritorioLibre : public Escritorio {
public:
    EscritorioLibre();

    QList<QUrl> eligeOrigenes() override;
    std::optional<QUrl> eligeDestino(const QString &nombre) override;
    std::optional<QUrl> eligeArchivo() override;
    std::optional<QUrl> eligeCarpeta(const QString &mensaje) override;
    void cierraPaneles() override;
    [[nodiscard]] QString textoDeBytes(qint64 bytes) const override;

    void abre(const QUrl &url, std::function<void()> siNo) override;

    /// Asks the file manager without waiting for it; when none answers in two
    /// seconds, the folder is opened instead.
    void revela(const QUrl &url, std::function<void()> siNo) override;

    void avanza(std::optional<double> parte) override;
    void avisa(Aviso cuando, const QString &titulo, const QString &texto) override;
    void alVolver(std::function<void(const Ficha &ficha)> hacer) override;
    bool arrastra(Saque &saque, const QString &rotulo) override;

private:
    [[nodiscard]] bool muestra(QFileDialog &dialogo);

    // From the first panel on: one that goes still reads on in the background.
    std::optional<IconosPorElNombre> m_iconos;
    Apariencia m_apariencia;
    Lanzador m_lanzador;
    Notificaciones m_notificaciones;
    QString m_carpeta; // where the last panel was left
};
