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

/// Returns what the tool libraries of a folder say about their tools, without those marked as
/// internal. Loads each library, asks it, and frees it again.
ToolCatalog listTools(const std::string& folder);

} // namespace Stage
