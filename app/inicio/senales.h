#pragma once

/// Makes the terminate requests of the session (SIGTERM, SIGHUP) and of a
/// terminal (SIGINT) end the event loop instead of the process, so that the way
/// out is the same as by the menu: jobs are ended and their password files go.
/// Call it once, on the main thread, with the application object made.
void salEnOrden();
