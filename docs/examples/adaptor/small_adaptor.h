// What the application knows of its adaptor: the one function that it looks up.
#pragma once

// Exported as "recordTake". Uses the core library at that path; null means that of the package
// with which the adaptor was built. Returns 0 for success; otherwise stdout or stderr says what
// failed.
using RecordTake = int (*)(const char* coreLibraryOrNull);
