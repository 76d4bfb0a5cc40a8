#include "data/writable_name.h"

#include "core/base/sdk/log.h"

#include <algorithm>
#include <string_view>

namespace MVR {
namespace {

constexpr std::string_view kSpace = " \t\r\n";

bool isUnwritable(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return c == '>' || (byte < 0x20 && kSpace.find(c) == std::string_view::npos) || byte == 0x7F;
}

} // namespace

bool isBlank(const std::string& name) {
    return name.find_first_not_of(kSpace) == std::string::npos;
}

std::string writableName(std::string name) {
    std::replace_if(name.begin(), name.end(), isUnwritable, '_');
    return name;
}

std::string adoptName(const std::string& name) {
    std::string writable = writableName(name);
    if (writable != name)
        Log(Log::Warning)
            .write("A name has characters that no file can hold, and becomes", writable,
                   Log::OwnLevel);
    return writable;
}

} // namespace MVR
