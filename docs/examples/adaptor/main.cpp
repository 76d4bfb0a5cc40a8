// An application that loads an adaptor, as a 3D application loads its plug-ins. It knows nothing of
// the core.
//
//     small_program [CORE_LIBRARY]

#include "small_adaptor.h"

#include <cstdio>

#include <dlfcn.h>

int main(int argumentCount, char** arguments) {
    void* const adaptor = dlopen(ADAPTOR, RTLD_NOW | RTLD_LOCAL);
    const auto recordTake =
        adaptor != nullptr ? reinterpret_cast<RecordTake>(dlsym(adaptor, "recordTake")) : nullptr;
    if (recordTake == nullptr) {
        std::fprintf(stderr, "%s\n", dlerror());
        return 2;
    }
    const int code = recordTake(argumentCount > 1 ? arguments[1] : nullptr);
    dlclose(adaptor);
    return code;
}
