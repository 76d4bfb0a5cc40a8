#pragma once

#include "data/kept_elements.h"

#include <string>
#include <unordered_map>

namespace MVR {

/// Elements in the data of a tool that no row of the table knows, such as those that a later
/// version writes. No bit of a mask leaves them out, but they are left out with their parent.
class UnknownElements {
public:
    /// Keeps those of the tool's element `data`, but for those of the tools below it.
    void read(const Tag& data);
    /// Keeps those of an element "MVR".
    void readTree(const Tag& tree);
    void clear();

    /// A tool may give its own data any name: what it wrote itself isn't written twice.
    void writeTo(Tag& tool) const { inTool_.writeMissingTo(tool); }
    void addOfNodeInfo(KeptElements& behind) const { behind.add(inNodeInfo_); }
    void writeToNode(const std::string& name, Tag& node) const;

private:
    KeptElements inTool_;
    KeptElements inNodeInfo_;
    std::unordered_map<std::string, KeptElements> inNodes_; // by the name of the node
};

} // namespace MVR
