#pragma once

#include <QByteArray>
#include <QList>
#include <QUrl>

#include <stop_token>

/// Adds up what a file or a folder holds, in bytes. Any thread; blocks for as
/// long as the disk takes.
///
/// A folder: the sizes of the regular files below it, hidden ones included,
/// each name of a hard-linked file counted, links not followed, whatever cannot
/// be read skipped. Anything else: its own size, or 0 if there is nothing.
/// A sum beyond the signed 64-bit range ends the process.
///
/// When `parar` asks for it, returns early with a sum of no meaning.
qint64 pesoDe(const QByteArray &ruta, const std::stop_token &parar = {});

/// The same for several file URLs together.
qint64 pesoDe(const QList<QUrl> &urls, const std::stop_token &parar = {});
