#pragma once

#include "encargo.h"
#include "lugares/espacio.h"
#include "textos/entradas.h"
#include "textos/falloalleer.h"

#include <QStringList>

#include <functional>
#include <memory>

/// The kinds of job, for Trabajo. Motor says what each of them does.
namespace encargos {

using Contrasena = std::optional<QString>;
using Nuevo = std::unique_ptr<Encargo>;

Nuevo comprimir(QList<QUrl> origenes, const QUrl &destino, bool maximo, Contrasena contrasena);

/// `listado` takes the result, and must outlive the job.
Nuevo listar(QUrl archivo, Contrasena contrasena, Lectura<Entradas> &listado);

Nuevo recuperarVarios(QUrl archivo, QUrl destino, QStringList rutas, Contrasena contrasena);
Nuevo recuperar(QUrl archivo, QUrl destino, std::optional<QString> patron, Contrasena contrasena);

Nuevo sacarParaVer(QUrl archivo, QString ruta, qint64 bytes, Contrasena contrasena,
                   std::function<void(const Lectura<QUrl> &)> hecho, EspacioLibre libre);

} // namespace encargos
