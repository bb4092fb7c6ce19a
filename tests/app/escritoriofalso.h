#pragma once

#include "puertos/escritorio.h"

#include <functional>

/// A desktop whose user has made up their mind beforehand.
class EscritorioFalso : public Escritorio {
public:
    QList<QUrl> origenes;
    std::optional<QUrl> destino;
    std::optional<QUrl> carpeta;

    QString nombrePropuesto;
    QString mensaje;

    QList<std::optional<double>> partes;
    QStringList avisos;
    Aviso ultimoAviso = Aviso::SiNoMira;
    std::function<bool(Saque &, const QString &)> lleva; ///< what the mouse does

    std::function<void()> entretanto = [] {}; ///< while a panel is open

    QList<QUrl> eligeOrigenes() override {
        entretanto();
        return origenes;
    }
    std::optional<QUrl> eligeDestino(const QString &nombre) override {
        nombrePropuesto = nombre;
        entretanto();
        return destino;
    }
    std::optional<QUrl> eligeArchivo() override { return {}; }
    std::optional<QUrl> eligeCarpeta(const QString &texto) override {
        mensaje = texto;
        entretanto();
        return carpeta;
    }
    void cierraPaneles() override {}
    void abre(const QUrl &, std::function<void()>) override {}
    [[nodiscard]] QString textoDeBytes(qint64 bytes) const override {
        return QString::number(bytes) + QStringLiteral(" b");
    }
    void revela(const QUrl &, std::function<void()>) override {}
    void avanza(std::optional<double> parte) override { partes.append(parte); }
    void avisa(Aviso cuando, const QString &titulo, const QString &texto) override {
        ultimoAviso = cuando;
        avisos.append(titulo + QStringLiteral(": ") + texto);
    }
    void alVolver(std::function<void(const Ficha &)>) override {}
    bool arrastra(Saque &saque, const QString &rotulo) override { return lleva(saque, rotulo); }
};
