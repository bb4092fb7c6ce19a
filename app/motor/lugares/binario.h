#pragma once

#include <QUrl>

#include <optional>

/// The engine's executable, looked for afresh at each call, or none. The first
/// that exists and may be executed of: the bundle's own, the two usual places
/// for programs, the "bin" of the home directory. Any thread.
std::optional<QUrl> buscaBinario();
