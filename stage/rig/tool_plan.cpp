#include "stage/rig/tool_plan.h"

#include "platform/sdk/files.h"
#include "stage/base/text.h"
#include "unidevice/sdk/binding_words.h"
#include "unidevice/sdk/profile_managers.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace Stage {

namespace {

namespace BindingWord = UniDevice::BindingWord;

constexpr std::array<std::string_view, 4> kSettingNames = {
    BindingWord::kMultiplier, BindingWord::kExponent, BindingWord::kDeadzone, BindingWord::kOffset};
/// The most lines of a plan file; a rig has a few dozen.
constexpr std::uint64_t kMostPlanBytes = 1 << 20;
constexpr std::size_t kMostPlanLines = 10'000;

bool names(const Setting& setting, const std::string& property) {
    return setting.property == property || setting.property == "*";
}

MVR::Tag toProperty(const std::string& name) {
    MVR::Tag property = MVR::Tag::element(BindingWord::kProperty);
    property.attributeRef(BindingWord::kName) = name;
    return property;
}

MVR::Tag toControl(const Binding& binding) {
    MVR::Tag control = MVR::Tag::element(BindingWord::kControl);
    control.attributeRef(BindingWord::kDevice) = binding.device;
    control.attributeRef(BindingWord::kDeviceIndex) = std::to_string(binding.deviceIndex);
    control.attributeRef(BindingWord::kType) = binding.type;
    control.attributeRef(BindingWord::kIndex) = std::to_string(binding.index);
    return control;
}

} // namespace

std::string Setting::toText() const {
    return (tool.empty() ? "" : tool + "/") + property + "." + name + "=" + Stage::toText(value);
}

bool parseBinding(const std::string& text, Binding& out, std::string& error) {
    const std::size_t equals = text.find('=');
    const std::size_t colon = text.find(':', equals == std::string::npos ? 0 : equals);
    Binding binding;
    if (equals != std::string::npos && colon != std::string::npos) {
        binding.property = trimmed(std::string_view(text).substr(0, equals));
        binding.device = trimmed(std::string_view(text).substr(equals + 1, colon - equals - 1));
        binding.type = text.substr(colon + 1);
        // A number behind the last colon is the index; a type may itself hold colons.
        const std::size_t last = binding.type.rfind(':');
        const std::string number = last != std::string::npos ? binding.type.substr(last + 1) : "";
        if (toNumber(number, binding.index))
            binding.type.resize(last);
        else if (!number.empty() && number.find_first_not_of("0123456789") == std::string::npos)
            binding.type.clear(); // an index that is too large
        const std::size_t hash = binding.device.rfind('#');
        if (hash != std::string::npos &&
            toNumber(std::string_view(binding.device).substr(hash + 1), binding.deviceIndex))
            binding.device.resize(hash);
    }
    if (binding.property.empty() || binding.device.empty() || binding.type.empty()) {
        error = "\"" + text + "\" is not a binding of the form PROPERTY=DEVICE:TYPE[:INDEX]";
        return false;
    }
    out = std::move(binding);
    return true;
}

bool addBinding(const std::string& text, ToolPlan& plan, std::string& error) {
    Binding binding;
    if (!parseBinding(text, binding, error))
        return false;
    const auto isReplaced = [&binding](const Binding& earlier) {
        return earlier.property == binding.property;
    };
    plan.bindings.erase(std::remove_if(plan.bindings.begin(), plan.bindings.end(), isReplaced),
                        plan.bindings.end());
    plan.bindings.push_back(std::move(binding));
    return true;
}

bool parseSetting(const std::string& text, const std::vector<ToolPlan>& tools, Setting& out,
                  std::string& error) {
    const std::size_t equals = text.find('=');
    const std::size_t dot = text.rfind('.', equals);
    Setting setting;
    if (equals == std::string::npos || dot == std::string::npos ||
        !toNumber(trimmed(std::string_view(text).substr(equals + 1)), setting.value)) {
        error = "\"" + text + "\" is not of the form PROPERTY.PARAMETER=NUMBER";
        return false;
    }
    setting.property = trimmed(std::string_view(text).substr(0, dot));
    setting.name = trimmed(std::string_view(text).substr(dot + 1, equals - dot - 1));
    if (std::find(kSettingNames.begin(), kSettingNames.end(), setting.name) ==
        kSettingNames.end()) {
        error = "\"" + setting.name +
                "\" is not a parameter: use multiplier, exponent, deadzone or offset";
        return false;
    }
    if (setting.name == BindingWord::kDeadzone && setting.value == 1.0) {
        error = "a deadzone of 1 leaves nothing of the control";
        return false;
    }
    const std::size_t slash = setting.property.find('/');
    const std::string prefix = setting.property.substr(0, slash);
    const bool isTool = std::any_of(tools.begin(), tools.end(), [&prefix](const ToolPlan& tool) {
        return tool.name == prefix || tool.type == prefix;
    });
    if (slash != std::string::npos && isTool) {
        setting.tool = prefix;
        setting.property.erase(0, slash + 1);
    }
    out = std::move(setting);
    return true;
}

bool readPlanFile(const std::string& path, ToolPlan& plan, std::string& error) {
    std::string text;
    if (!MVR::Platform::readFile(path, text, kMostPlanBytes)) {
        error = "can't read " + path + ": " + MVR::Platform::lastFileError();
        return false;
    }
    std::size_t number = 0;
    for (std::string_view rest = text; !rest.empty();) {
        const std::size_t length = std::min(rest.find('\n'), rest.size());
        const std::string line(trimmed(rest.substr(0, length)));
        rest.remove_prefix(std::min(length + 1, rest.size()));
        ++number;
        bool isGood = line.empty() || line.front() == '#';
        if (number > kMostPlanLines) {
            isGood = false;
            error = "a file of bindings has at most " + std::to_string(kMostPlanLines) + " lines";
        } else if (line.rfind("bind ", 0) == 0) {
            isGood = addBinding(line.substr(5), plan, error);
        } else if (line.rfind("set ", 0) == 0) {
            isGood = parseSetting(line.substr(4), {}, plan.settings.emplace_back(), error);
        } else if (!isGood) {
            error = "a line must begin with bind, set or #";
        }
        if (!isGood) {
            error = path + ":" + std::to_string(number) + ": " + error;
            return false;
        }
    }
    return true;
}

MVR::Tag toProfile(const ToolPlan& plan) {
    MVR::Tag profile = MVR::Tag::element(MVR::kProfileElement);
    profile.attributeRef("name") = "";
    std::vector<std::string> properties;
    for (const Binding& binding : plan.bindings)
        properties.push_back(binding.property);
    for (const Setting& setting : plan.settings)
        if (setting.property != "*" &&
            std::find(properties.begin(), properties.end(), setting.property) == properties.end())
            properties.push_back(setting.property);
    for (const std::string& name : properties) {
        MVR::Tag property = toProperty(name);
        for (const Setting& setting : plan.settings) {
            if (!names(setting, name))
                continue;
            // The first element of a name counts when it is read, so a later setting replaces it.
            if (!property.child(setting.name).isEmpty())
                property.removeChild(MVR::Tag::element(setting.name));
            property.addChild(MVR::Tag::element(setting.name, toText(setting.value)));
        }
        for (const Binding& binding : plan.bindings) {
            if (binding.property == name) {
                property.addChild(toControl(binding));
                break;
            }
        }
        profile.addChild(std::move(property));
    }
    return profile;
}

MVR::Tag toMapping(const Setting& setting, const std::string& property) {
    MVR::Tag mapping = toProperty(property);
    mapping.addChild(MVR::Tag::element(setting.name, toText(setting.value)));
    return mapping;
}

} // namespace Stage
