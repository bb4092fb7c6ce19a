#pragma once

#include "cifrado/cabecera_age.h"

namespace orcalin {

/// The file key of the archive with this header, for who takes several things
/// out of one archive, a run each. The full derivation is paid once; after that
/// the kernel keeps the key for the runs to come, until none has asked for it
/// for a minute. Where there is no keyring, or ORCALIN_SIN_LLAVERO is set, the
/// full derivation is paid every time. Throws like CabeceraAge::abre().
///
/// Why this gives nothing away:
/// - What the kernel keeps is another header of the same kind: the file key,
///   wrapped with the same password and a salt of its own, only at a lower work
///   factor (13). So neither the key nor a fast hash of the password is ever
///   there to be read, and a wrong password is refused as before, after both
///   derivations. Who gets hold of it guesses at a sixteenth of the price per
///   attempt, four bits of the password, while it lasts.
/// - Only processes of the same login session get hold of it (the right comes
///   with possession of the session's keyring, or of the user's where there are
///   no sessions), and those can read the password file anyway. It is in kernel
///   memory, neither swapped nor dumped, and gone after the minute.
/// - Its name, which the user's other processes may see, is a hash of the
///   archive's header: whoever has the archive knows it.
/// - What is found is taken only if it authenticates the archive's own header,
///   so nobody makes us read with another key.
Secreto claveDe(const CabeceraAge &cabecera, const Secreto &contrasena);

} // namespace orcalin
