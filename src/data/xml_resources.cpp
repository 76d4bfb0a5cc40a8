#include "data/xml_resources.h"

#include "core/base/folders.h"

#include <array>
#include <cstddef>
#include <string_view>

namespace MVR {
namespace {

struct Layout {
    std::uint16_t number;
    std::string_view xmlText;
};

constexpr std::array<Layout, 0> kLayouts{};

struct PathMacro {
    std::string_view text;
    std::string (*getFolder)();
};

// In the order in which they are expanded.
constexpr PathMacro kPathMacros[] = {
    {"[DATAPATH]", [] { return resolveDocumentsPath() + "\\data"; }},  // the user's
    {"[SHAREDDATAPATH]", [] { return readInstallValue("datapath"); }}, // the install's
};

// Macros within a folder's own name are not expanded.
void expand(std::string& path, const PathMacro& macro) {
    std::size_t at = 0;
    while ((at = path.find(macro.text, at)) != std::string::npos) {
        const std::string folder = macro.getFolder();
        path.replace(at, macro.text.size(), folder);
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
    for (const PathMacro& macro : kPathMacros)
        expand(result, macro);
    return result;
}

} // namespace MVR
