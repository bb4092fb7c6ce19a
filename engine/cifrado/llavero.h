#pragma once

#include "cifrado/cabecera_age.h"
#include "cifrado/contrasena.h"

namespace orcalin {

/// The file key of the archive with this header, for who takes several things
/// out of one archive, a run each. The full derivation is paid once (a terminal
/// is told of the wait); after that the kernel keeps the key for the runs to
/// come, until none has asked for it for a minute. Where there is no keyring, it
/// is not to be remembered, or ORCALIN_SIN_LLAVERO is set (for who starts
/// whatever starts us), nothing is kept or looked for, and the full derivation is
/// paid every time. Throws like leeContrasena() and CabeceraAge::abre().
///
/// What this gives away, and what not:
/// - What the kernel keeps is another header of the same kind: the file key,
///   wrapped with the same password and a salt of its own, only at a lower work
///   factor (13). So neither the key nor a fast hash of the password is ever
///   there to be read, and a wrong password is refused as before, after both
///   derivations.
/// - Who gets hold of it can guess the password at a sixteenth of the work and a
///   sixteenth of the memory (8 MiB instead of 128) per attempt. Hardware whose
///   memory is the limit tries sixteen at a time where it tried one, so count
///   with up to 256 times as many guesses: eight bits of the password. The
///   minute does not undo that, since what was read can be kept. A password that
///   is good at the full price only should not be remembered.
/// - The kernel hands it to processes that possess the session's keyring (or the
///   user's where there are no sessions). Other users have no way to that; any
///   process of the same user may find one, by joining that keyring or through a
///   process that has it. It is no wall between programs of one user, whose files
///   lie open to them all the same; but a password typed into the window, or a
///   file that is gone by then, would not.
/// - It is in kernel memory, neither swapped nor dumped, and gone after the minute.
/// - Its name, which the user's other processes may see, is a hash of the
///   archive's header: whoever has the archive knows it, and learns that it was
///   opened.
/// - What is found is taken only if it authenticates the archive's own header,
///   so nobody makes us read with another key.
Secreto claveDe(const CabeceraAge &cabecera, const FicheroContrasena &fichero);

} // namespace orcalin
