#pragma once

#include "data/sdk/tag.h"

#include <cstdint>
#include <string>
#include <vector>

namespace UniDevice {
class Property;
}

namespace Stage {

/// A property of a tool and the control that drives it.
struct Binding {
    std::string property;
    std::string device;
    std::int32_t deviceIndex = 0;
    std::string type;
    std::int32_t index = 0;
};

/// One number of a property's mapping.
struct Setting {
    std::string tool;     ///< a tool's name or type; empty for every tool
    std::string property; ///< "*" for all that are bound
    std::string name;     ///< multiplier, exponent, deadzone or offset
    double value = 0.0;

    [[nodiscard]] std::string toText() const;
};

/// One tool to be placed.
struct ToolPlan {
    std::string type;
    std::string name; ///< not empty; the core makes it unique
    std::vector<Binding> bindings;
    std::vector<Setting> settings;
    bool isAside = false; ///< a setting must name it to mean it

    /// True if `setting` may mean a property of this tool.
    [[nodiscard]] bool isMeantBy(const Setting& setting) const {
        return (setting.tool.empty() && !isAside) || setting.tool == name || setting.tool == type;
    }
};

/// Reads "PROPERTY=DEVICE[#NUMBER]:TYPE[:INDEX]", such as "Position X=OSC:/camera/position:0".
/// False, with a message in `error`, if it has no such form.
[[nodiscard]] bool parseBinding(const std::string& text, Binding& out, std::string& error);

/// Reads "PROPERTY.SETTING=VALUE", such as "Position X.multiplier=2". A "NAME/" in front, the
/// name or type of one of `tools`, leaves the others out.
[[nodiscard]] bool parseSetting(const std::string& text, const std::vector<ToolPlan>& tools,
                                Setting& out, std::string& error);

/// Adds the lines "bind ..." and "set ..." of a file to a plan; what follows is as in the options.
/// Empty lines and lines that begin with "#" are skipped.
[[nodiscard]] bool readPlanFile(const std::string& path, ToolPlan& plan, std::string& error);

/// The plan's bindings and settings as a profile for MVR::CoreTools::create().
MVR::Tag toProfile(const ToolPlan& plan);

/// Writes one number into a property.
void apply(const Setting& setting, UniDevice::Property& property);

} // namespace Stage
