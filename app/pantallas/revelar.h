#pragma once

#include <QUrl>

class Escritorio;

/// Shows in the file manager what a job has made; where nothing can show it, the
/// user is told where it is. Main thread only.
void revelaOAvisa(Escritorio &escritorio, const QUrl &url);
