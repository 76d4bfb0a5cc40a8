#include "data/xml_resources.h"

#include "core/base/folders.h"

#include <array>
#include <string_view>

namespace MVR {
namespace {

struct Layout {
    std::uint16_t number;
    std::string_view xmlText;
};

constexpr std::array<Layout, 0> kLayouts{};

// Macros within a folder's own name are not expanded.
template <typename Value>
void expand(std::string& path, std::string_view macro, Value value) {
    std::size_t at = 0;
    while ((at = path.find(macro, at)) != std::string::npos) {
        const std::string folder = value();
        path.replace(at, macro.size(), folder);
        at += folder.size();
    }
}

} // namespace

Tag loadXmlResource(std::uint16_t number) {
    for (const Layout& layout : kLayouts)
        if (layout.number == number)
            return Tag(std::string(layout.xmlText));
    return Tag();
}

std::string expandPathMacros(const std::string& path) {
    std::string result = path;
    expand(result, "[DATAPATH]", [] { return resolveDocumentsPath() + "\\data"; });
    expand(result, "[SHAREDDATAPATH]", [] { return readInstallValue("datapath"); });
    return result;
}

} // namespace MVR
