#pragma once

#include <QColor>
#include <QPalette>

#include <optional>

/// What the desktop says it prefers, by the settings portal's numbers.
enum class Esquema { SinPreferencia, Oscuro, Claro };

/// The palette for a preference: the desktop's own, if that is dark or light as
/// wanted, else one of ours; with the accent, if there is one, for what is
/// highlighted. Whatever is written on it can be read.
QPalette paletaPara(const QPalette &delEscritorio, Esquema esquema,
                    const std::optional<QColor> &acento);
