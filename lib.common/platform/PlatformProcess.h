#pragma once

#include <QString>

// Process facts read from the operating system. Library-internal.

// The folder of the running executable, with forward slashes.
QString PlatformApplicationFolder();
// Whether a debugger is attached to this process now.
bool PlatformIsDebuggerPresent();
// Masks every floating point exception on the calling thread.
void PlatformMaskFpuExceptions();
