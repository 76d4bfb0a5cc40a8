#pragma once

#include "data/kept_elements.h"

#include <string>
#include <unordered_map>

namespace MVR {

class ModelParts;

/// Elements in the data of a tool that no row of the table knows, such as those that a later
/// version writes. No bit of a mask leaves them out, but they are left out with their parent.
class UnknownElements {
public:
    /// Keeps in `parts` those of the tool's element `data`, but for those of the tools below it.
    static void read(const Tag& data, ModelParts& parts);
    /// Keeps those of an element "MVR".
    static void readTree(const Tag& tree, ModelParts& parts);
    static void clear(ModelParts& parts);

    /// A tool may give its own data any name: what it wrote itself isn't written twice.
    void writeTo(Tag& tool) const { inTool_.writeMissingTo(tool); }
    void addOfNodeInfo(KeptElements& behind) const { behind.add(inNodeInfo_); }
    void writeToNode(const std::string& name, Tag& node) const;

private:
    [[nodiscard]] bool isEmpty() const {
        return inTool_.isEmpty() && inNodeInfo_.isEmpty() && inNodes_.empty();
    }

    KeptElements inTool_;
    KeptElements inNodeInfo_;
    std::unordered_map<std::string, KeptElements> inNodes_; // by the name of the node
};

} // namespace MVR
