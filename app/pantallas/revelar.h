#pragma once

#include <QUrl>

#include <functional>

class Escritorio;

/// Shows in the file manager what a job has made. Where that cannot be done, the
/// user is told where it is, or that it is gone. Main thread only.
void revelaOAvisa(Escritorio &escritorio, const QUrl &url);

/// Opens a file with its default application. Where nothing opens it, the file
/// manager shows it, and where there is none of those either, `siNo` is called.
/// Main thread only.
void abreOMuestra(Escritorio &escritorio, const QUrl &url, const std::function<void()> &siNo);
