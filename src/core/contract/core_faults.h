#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace MVR {

/// One thing that could not be done. A part that isn't known is "".
struct CoreFault {
    std::string model;     ///< its outermost tool, with its folder; the file if `tool` is ""
    std::string tool;      ///< the name that the tool has in the model
    std::string element;   ///< of the tool: the element of the file, with a name or a number
    std::string text;      ///< what is wrong with it, in English
    std::int32_t code = 0; ///< of ErrorCode, or the tool's own if it refused; 0 for none
    /// True if the tool is missing because of it. Each missing tool has exactly one such fault.
    bool isToolMissing = false;
};

/// Returns the fault as one line for the user, such as "Model Dolly in /models, tool Camera, type:
/// there is no such kind of tool: Crane".
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
/// and each creation in a dialog starts with an empty list, unless it runs inside another one: then
/// its faults follow the others. The list stays until the next of them starts.
///
/// getFaults() in core_extensions.h returns it. The core owns it. All calls come on the host's
/// thread, at any time. A later version adds operations at the end.
class CoreFaults {
public:
    static constexpr std::int32_t kVersion = 1;

    virtual std::int32_t getVersion() = 0;
    /// Returns the faults in the order in which they were found.
    virtual std::vector<CoreFault> list() = 0;
    /// Adds a fault of the tool under way, and a warning to the log. For an adaptor, from inside a
    /// call that the core makes while it creates tools: `text` says why the adaptor can't do what
    /// is asked, such as why AdaptorInterface::mergeFile() returns no nodes. Returns false if
    /// nothing is under way; then only the log has the text.
    virtual bool tell(std::string text) = 0;

protected:
    ~CoreFaults() = default;
};

} // namespace MVR
