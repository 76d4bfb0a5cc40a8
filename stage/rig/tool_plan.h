#pragma once

#include "data/sdk/tag.h"

#include <cstdint>
#include <string>
#include <vector>

namespace Stage {

/// A property of a tool and the control that drives it.
struct Binding {
    std::string property;
    std::string device;
    std::int32_t deviceIndex = 0;
    std::string type;
    std::int32_t index = 0;
};

/// A change of one parameter of a property.
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
    bool isAside = false; ///< only a setting that names it applies to it

    /// Returns true if `setting` may apply to a property of this tool.
    [[nodiscard]] bool isMeantBy(const Setting& setting) const {
        return (setting.tool.empty() && !isAside) || setting.tool == name || setting.tool == type;
    }
};

/// Reads "PROPERTY=DEVICE[#NUMBER]:TYPE[:INDEX]", such as "Position X=OSC:/camera/position:0".
/// Returns false, with a message in `error`, if it has another form.
[[nodiscard]] bool parseBinding(const std::string& text, Binding& out, std::string& error);

/// The same, into the plan of a tool: the binding replaces an earlier one of its property.
[[nodiscard]] bool addBinding(const std::string& text, ToolPlan& plan, std::string& error);

/// Reads "PROPERTY.PARAMETER=NUMBER", such as "Position X.multiplier=2". A "NAME/" in front, the
/// name or type of one of `tools`, restricts it to that tool.
[[nodiscard]] bool parseSetting(const std::string& text, const std::vector<ToolPlan>& tools,
                                Setting& out, std::string& error);

/// Adds the lines "bind ..." and "set ..." of a file to a plan; their arguments are as in the
/// options. Skips empty lines and lines that begin with "#".
[[nodiscard]] bool readPlanFile(const std::string& path, ToolPlan& plan, std::string& error);

/// Returns the plan's bindings and settings as a profile for MVR::CoreTools::create().
MVR::Tag toProfile(const ToolPlan& plan);

/// Returns the element with which MVR::CoreTools::setMapping() makes the change at `property`.
MVR::Tag toMapping(const Setting& setting, const std::string& property);

} // namespace Stage
