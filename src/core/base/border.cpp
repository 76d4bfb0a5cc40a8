#include "core/base/border.h"

#include "core/base/sdk/log.h"

namespace MVR {

void Border::logThrown(const std::string& who, std::string_view operation, const char* reason) {
    Log(Log::Error).write(who + " threw in " + std::string(operation) + ": " + reason);
}

} // namespace MVR
