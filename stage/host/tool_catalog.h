#pragma once

#include <string>
#include <vector>

namespace Stage {

struct ToolEntry {
    std::string name;
    std::string version;
    std::string description;
    std::string category;
    std::string author;
    std::string library; ///< path of the library's file
};

struct ToolCatalog {
    std::vector<ToolEntry> tools;    ///< by library name, in the library's order
    std::vector<std::string> faults; ///< a line for each library that can't be used
};

/// What the tool libraries of a folder say of their tools. Tools that are marked as internal are
/// left out. Each library is loaded, asked, and freed again.
ToolCatalog listTools(const std::string& folder);

} // namespace Stage
