#pragma once

/// Makes the terminate requests of the session (SIGTERM, SIGHUP) and of a
/// terminal (SIGINT) end the event loop instead of the process, so that jobs
/// are ended and their password files go. Nobody is asked: who sends a signal
/// does not wait for an answer.
/// Call it once, on the main thread, with the application object made.
void salEnOrden();
