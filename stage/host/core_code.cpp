#include "stage/host/core_code.h"

#include "core/base/sdk/error_code.h"

namespace Stage {

std::string describeCode(std::int32_t code) {
    const MVR::ErrorCode& entry = MVR::ErrorCode::instance()->find(code);
    return entry.getMessage() + " (" + entry.getIdentifier() + ")";
}

} // namespace Stage
