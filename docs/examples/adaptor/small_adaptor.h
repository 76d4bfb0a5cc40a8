// What the application knows of its adaptor: the one function that it looks up.
#pragma once

// Exported as "recordTake". Uses the core library at that path; null means that of the package
// which the adaptor was built with. 0 if all went well; else stdout or stderr tells what didn't.
using RecordTake = int (*)(const char* coreLibraryOrNull);
