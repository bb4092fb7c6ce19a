#include "tar/hora.h"

namespace orcalin {
namespace {

constexpr long porSegundo = 1'000'000'000;

} // namespace

bool leeHora(archive_entry *ficha, timespec &hora) {
    if (archive_entry_mtime_is_set(ficha) == 0)
        return false;
    hora = {archive_entry_mtime(ficha), archive_entry_mtime_nsec(ficha)};
    if (hora.tv_sec < 0 && hora.tv_nsec > 0)
        hora = {hora.tv_sec - 1, porSegundo - hora.tv_nsec};
    return true;
}

void ponHora(archive_entry *ficha, const timespec &hora) {
    if (hora.tv_sec < -1 && hora.tv_nsec > 0)
        archive_entry_set_mtime(ficha, hora.tv_sec + 1, porSegundo - hora.tv_nsec);
    else
        archive_entry_set_mtime(ficha, hora.tv_sec, hora.tv_sec < 0 ? 0 : hora.tv_nsec);
}

} // namespace orcalin
