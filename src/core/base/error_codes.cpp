#include "core/base/error_codes.h"

namespace MVR {

std::int32_t reportCode(const CodeRow& row) {
    return ErrorCode::instance()->get(row.identifier, row.message, row.type);
}

void registerRow(const CodeRow& row) {
    ErrorCode& codes = *ErrorCode::instance();
    if (!codes.isRegistered(row.identifier))
        codes.registerCode(ErrorCode(row.identifier, row.message, row.type));
}

void registerCommonCodes() {
    using namespace Codes;
    // The order fixes the values.
    for (const CodeRow& row :
         {kGeneral, kIndexOutOfBounds, kNull, kException, kFatal, kNotImplemented, kInvalidData,
          kPluginNotFound, kCouldNotInstanciate})
        registerRow(row);
}

} // namespace MVR
