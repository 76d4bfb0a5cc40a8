// Where in a model something is wrong, for the log and the list of faults.
#pragma once

#include "core/contract/core_faults.h"
#include "data/sdk/tag.h"

#include <cstdint>
#include <string>

namespace MVR {

class FaultList;

/// A tool within a model. The names come from the model, whoever wrote that.
class ModelPlace {
public:
    /// `faults` is the attachment's list, `outermost` is the element of the tool that all others of
    /// the model are below, `folder` where the model came from; "" if it is not from a file. Until
    /// setTool() the tool is `outermost`.
    ModelPlace(FaultList& faults, const Tag& outermost, const std::string& folder);

    /// Sets the tool that is worked on.
    void setTool(const std::string& name);
    /// Logs one fault in one line: the model, the tool, the element and what is wrong with it.
    /// `code` is that of a tool that refused. The fault is also added to the list of the operation
    /// that the user asked for.
    void log(const std::string& element, const std::string& fault, std::int32_t code = 0) const;
    /// As log(), for why the tool isn't there. The first such fault of a tool is told as that.
    void logMissing(const std::string& element, const std::string& fault, std::int32_t code);
    [[nodiscard]] bool isMissingTold() const { return isMissingTold_; }
    /// What the host tells from now on concerns `element` of this tool.
    void listen(const std::string& element) const;

private:
    void add(const CoreFault& fault) const;

    FaultList* faults_;
    std::string model_;
    std::string tool_;
    bool isMissingTold_ = false;
};

} // namespace MVR
