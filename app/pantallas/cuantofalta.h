#pragma once

#include <QString>

/// A remaining time in words, without the "~". `s`: seconds, not negative.
QString cuantoFalta(double s);
