/// \file
/// Where in a model something is wrong, for the log.
#pragma once

#include "data/sdk/tag.h"

#include <string>

namespace MVR {

/// A tool within a model. The names come from the model, whoever wrote that.
class ModelPlace {
public:
    /// `outermost` is the element of the tool that all others of the model hang below, `folder`
    /// where the model came from; "" if it is no file's. Until setTool() the tool is `outermost`.
    ModelPlace(const Tag& outermost, const std::string& folder);

    void setTool(const std::string& name) { tool_ = name; }
    /// One line for one fault: the model, the tool, the element and what is wrong with it.
    void log(const std::string& element, const std::string& fault) const;

private:
    std::string model_;
    std::string tool_;
};

} // namespace MVR
