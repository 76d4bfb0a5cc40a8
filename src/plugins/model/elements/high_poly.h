#pragma once

#include "data/sdk/tag.h"
#include "plugins/contract/transform_matrix.h"
#include "plugins/model/elements/element.h"

#include <string>
#include <unordered_map>
#include <vector>

namespace MVR {

class CoreServices;

/// The detailed model that a model adds to its light scene objects. The nodes that were merged wait
/// here for their names.
class HighPoly {
public:
    static constexpr const char* kWord = "highpoly";

    static void save(const ToolSaving& tool, Tag& out);
    static void load(ToolLoading& tool, const Tag& data);

    /// Keeps `highPoly`, merges the first of its models that fits this host, and hides it. `folder`
    /// is that of the model that names it.
    void merge(CoreServices& services, const Tag& highPoly, const std::string& folder,
               const ModelPlace& place);
    /// Returns a merged node that waits, or null if there is none.
    [[nodiscard]] SceneNode* find(const std::string& name) const;
    /// Gives the merged nodes names that begin with the tool's, and then back to the host.
    void nameNodes(const std::string& toolName);
    /// Gives them back as they are.
    void releaseNodes();

private:
    void choosePostMerge(const Tag& highPoly, const Tag& option, const ModelPlace& place);
    void mergeFile(CoreServices& services, const std::string& file, const ModelPlace& place);

    Tag read_;                           // the element, to be written again
    Matrix postMerge_ = kIdentityMatrix; // for merged nodes that are roots
    std::vector<SceneNode*> nodes_;      // merged, until they have their names; handles
    std::unordered_map<std::string, SceneNode*> byName_; // the same
};

} // namespace MVR
