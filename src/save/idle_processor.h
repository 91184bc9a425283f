// Whether a second thread would have a processor of its own.
#pragma once

// True when fewer threads are running or ready to run than there are processors, so that
// another thread would not only take turns with this one.
bool processorIdle();
