#pragma once

class QThreadPool;

/// Where blocking work goes that the user waits for. Large enough that jobs
/// which wait for a child or a slow disk do not wait for each other. Any
/// thread. Before the application ends it must have run dry (`waitForDone`).
QThreadPool &colaDeFondo();
