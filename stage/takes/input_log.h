#pragma once

#include <string>
#include <vector>

namespace MVR {
class CoreTools;
}

namespace Stage {

class Session;

/// The values of the controls that a session's tools are bound to, at each frame of a take. They
/// come from the controls themselves, so that the keys of the take can be compared with them.
class InputLog {
public:
    /// Logs the tools placed so far, without those that are aside; `session` must outlive the log.
    explicit InputLog(const Session& session);

    /// Call it while the devices hold the values of the frame.
    void addFrame(double time);

    /// Returns "time,TOOL/PROPERTY,...", and a line for each frame with the exact raw values.
    [[nodiscard]] const std::string& getTable() const { return table_; }

private:
    struct LoggedTool {
        std::string name; ///< in the scene
        std::vector<std::string> properties;
    };

    MVR::CoreTools& tree_;
    std::vector<LoggedTool> tools_;
    std::string table_ = "time";
};

} // namespace Stage
