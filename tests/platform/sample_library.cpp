#include "platform/libraries.h"
#include "platform/registry.h"

using namespace MVR::Platform;

extern "C" {

[[gnu::visibility("default")]] int countCalls() {
    static int calls = 0;
    return ++calls;
}

[[gnu::visibility("default")]] void* askOwnModule() {
    return ownModule();
}

[[gnu::visibility("default")]] void askOwnModulePath(std::string* out) {
    *out = ownModulePath();
}

[[gnu::visibility("default")]] int askInstallValue(const char* name, std::string* out) {
    return int(readRegistryValue(Hive::LocalMachine, "SOFTWARE\\Oskelworks\\Lensetta", name, *out));
}
}
