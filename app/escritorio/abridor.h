#pragma once

#include <QUrl>

#include <functional>

/// Has the desktop open a file or folder with its default application, which
/// outlives this one. `siNo` is called, on the main thread and at most once,
/// when the desktop says that it cannot: during the call, or soon after. Nothing
/// waits for it. Main thread only.
void abreFuera(const QUrl &url, std::function<void()> siNo);
