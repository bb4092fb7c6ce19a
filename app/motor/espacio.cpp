#include "espacio.h"

#include <filesystem>

std::optional<qint64> espacioLibre(const QByteArray &carpeta) {
    // Asked of the folder itself: the list of mounted volumes, by which Qt
    // finds it, knows nothing of a container's root.
    std::error_code fallo;
    const auto espacio = std::filesystem::space(carpeta.toStdString(), fallo);
    if (fallo || espacio.available > static_cast<uintmax_t>(std::numeric_limits<qint64>::max()))
        return std::nullopt;
    return static_cast<qint64>(espacio.available);
}
