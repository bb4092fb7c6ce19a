#pragma once

#include "sistema/descriptor.h"

#include <QByteArray>

/// A pipe whose ends no other child inherits. The reading end never blocks.
/// Used by one thread at a time.
struct Tuberia {
    Descriptor lectura;
    Descriptor escritura;

    /// Makes both ends. False when the system has no descriptors left; errno
    /// says why.
    bool abre();
};

/// What a pipe holds at this moment, at most one pipe's capacity. Does not wait
/// for whoever still has the writing end, so that a grandchild that kept it
/// cannot hold up the end of a job.
QByteArray leeLoQueHay(const Descriptor &lectura);
