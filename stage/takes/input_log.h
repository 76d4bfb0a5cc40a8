#pragma once

#include <string>
#include <vector>

namespace UniDevice {
class Property;
}

namespace Stage {

class Session;

/// What the controls that a session's tools are bound to hold at each frame of a take. The controls
/// themselves are asked, so that the keys of the take can be held against it.
class InputLog {
public:
    /// Of the tools that are placed by now; `session` must outlive the log. Tools that stand aside
    /// are left out.
    explicit InputLog(const Session& session);

    /// Call it while the devices hold what the frame is made of.
    void addFrame(double time);

    /// "time,TOOL/PROPERTY,...", a line for each frame, the raw values to the last bit.
    [[nodiscard]] const std::string& getTable() const { return table_; }

private:
    std::vector<const UniDevice::Property*> properties_; // the core's
    std::string table_ = "time";
};

} // namespace Stage
