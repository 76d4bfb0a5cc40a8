#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace MVR {

/// One thing that could not be done. What isn't known of it is "".
struct CoreFault {
    std::string model;     ///< its outermost tool, with its folder; without `tool` the file
    std::string tool;      ///< the name that the tool has in the model
    std::string element;   ///< what of the tool: the element of the file, with a name or a number
    std::string text;      ///< what is wrong with it, in English
    std::int32_t code = 0; ///< of ErrorCode, or a tool's own where it refused; 0 for none
    /// The tool isn't there because of it. Each tool that is missing has one such fault.
    bool isToolMissing = false;
};

/// The fault as one line for the user, such as "Model Dolly in /models, tool Camera, type: there is
/// no such kind of tool: Crane".
inline std::string toText(const CoreFault& fault) {
    std::string place = fault.model;
    if (!fault.tool.empty())
        place = "Model " + fault.model + ", tool " + fault.tool;
    if (!fault.element.empty())
        place += ", " + fault.element;
    return (place.empty() ? "" : place + ": ") + fault.text;
}

/// What the last load, save, create or merge could not do.
///
/// Each of CoreModels::load() and save(), CoreTools::create(), CoreInterface::loadConfiguration()
/// and what the user creates in a dialog begins with an empty list, unless it runs inside another
/// one: then its faults follow the others. The list stays until the next of them begins.
///
/// getFaults() in core_extensions.h gives it. The core owns it. All calls come on the host's
/// thread, at any time. A later version adds operations at the end.
class CoreFaults {
public:
    static constexpr std::int32_t kVersion = 1;

    virtual std::int32_t getVersion() = 0;
    /// In the order in which they were found.
    virtual std::vector<CoreFault> list() = 0;
    /// For an adaptor, from inside a call that the core makes while it creates tools: why it can't
    /// do what is asked, such as why AdaptorInterface::mergeFile() gives no nodes. It becomes a
    /// fault of the tool under way, and a warning in the log. False, and only the log has it, if
    /// nothing is under way.
    virtual bool tell(std::string text) = 0;

protected:
    ~CoreFaults() = default;
};

} // namespace MVR
