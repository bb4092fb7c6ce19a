#pragma once

#include <QByteArrayView>
#include <QList>
#include <QString>
#include <QStringView>

/// The engine's texts. Any thread.
namespace lineas {

/// Bytes as text, or the empty text when they are not valid UTF-8.
QString texto(QByteArrayView utf8);

/// The lines of a text, without the empty ones. Every newline character ends a
/// line: U+000A to U+000D, U+0085, U+2028, U+2029. The views last as long as
/// what `texto` looks at.
QList<QStringView> separa(QStringView texto);

/// A line without any "Error: " in it.
QString sinPrefijo(QStringView linea);

/// What the engine complains of: the first line that holds "Error" in this
/// very spelling, without any "Error: ", or `siNo` when there is none. An engine
/// may complain without end: not on the main thread.
QString primerError(QStringView texto, const QString &siNo);

} // namespace lineas
