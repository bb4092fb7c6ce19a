#pragma once

#include <QUrl>

class Escritorio;

/// Shows in the file manager what a job has made. Where that cannot be done, the
/// user is told where it is, or that it is gone. Main thread only.
void revelaOAvisa(Escritorio &escritorio, const QUrl &url);
