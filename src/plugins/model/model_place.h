// Where in a model something is wrong, for the log and the list of faults.
#pragma once

#include "core/services/fault_list.h"
#include "data/sdk/tag.h"

#include <cstdint>
#include <string>

namespace MVR {

/// A tool within a model. The names come from the model, whoever wrote that, and are read when
/// there is a fault: what a place is given outlives it.
class ModelPlace final : public FaultPlace {
public:
    /// `faults` is the attachment's list, `outermost` is the element of the tool that all others of
    /// the model are below, `folder` where the model came from; "" if it is not from a file. Until
    /// setTool() the tool is `outermost`.
    ModelPlace(FaultList& faults, const Tag& outermost, const std::string& folder)
        : faults_(&faults), outermost_(&outermost), folder_(&folder), tool_(&outermost) {}
    ModelPlace(FaultList& faults, const Tag& outermost, std::string&& folder) = delete;
    ModelPlace(const ModelPlace&) = default;
    ModelPlace& operator=(const ModelPlace&) = default;
    ~ModelPlace() override;

    /// Sets the element of the tool that is worked on; what the host tells concerns it.
    void setTool(const Tag& tool);
    /// Logs one fault in one line: the model, the tool, the element and what is wrong with it.
    /// `code` is that of a tool that refused. The fault is also added to the list of the operation
    /// that the user asked for.
    void log(const std::string& element, const std::string& fault, std::int32_t code = 0) const;
    /// As log(), for why the tool isn't there. The first such fault of a tool is told as that.
    void logMissing(const std::string& element, const std::string& fault, std::int32_t code);
    [[nodiscard]] bool isMissingTold() const { return isMissingTold_; }
    /// What the host tells from now on concerns `element` of this tool.
    void listen(const std::string& element) const;
    [[nodiscard]] CoreFault describe() const override;

private:
    void add(const std::string& element, const std::string& text, std::int32_t code,
             bool isToolMissing) const;

    FaultList* faults_;
    const Tag* outermost_;
    const std::string* folder_;
    const Tag* tool_;
    bool isMissingTold_ = false;
};

} // namespace MVR
