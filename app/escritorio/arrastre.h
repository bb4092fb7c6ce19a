#pragma once

#include <QString>

class Saque;

/// Drags what is being taken out with the mouse, whose left button is held; see
/// Escritorio::arrastra. False at once when the button is not held any more.
bool arrastraFuera(Saque &saque, const QString &rotulo);
