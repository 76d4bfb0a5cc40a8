// How the tree shows a tool: three switches, written only if they are off.
#pragma once

#include "data/sdk/tag.h"
#include "plugins/instance_reference.h"
#include "plugins/model/elements/element.h"

namespace MVR {

template <class State>
struct SwitchElement {
    static constexpr const char* kOff = "false";

    static void save(const ToolSaving& tool, Tag& out) {
        if (!State::isOn(tool.reference))
            out.addChild(Tag::element(State::kWord, kOff));
    }
    static void load(ToolLoading& tool, const Tag& data) {
        if (data.child(State::kWord).value() == kOff)
            State::turnOff(tool.reference);
    }
};

/// Whether it is shown at all.
struct ShownElement : SwitchElement<ShownElement> {
    static constexpr const char* kWord = "visible";
    static bool isOn(const InstanceReference& reference) { return reference.isShown(); }
    static void turnOff(InstanceReference& reference) { reference.setShown(false); }
};

/// Whether the tools below it are unfolded.
struct ExpandedElement : SwitchElement<ExpandedElement> {
    static constexpr const char* kWord = "expanded";
    static bool isOn(const InstanceReference& reference) { return reference.isExpanded(); }
    static void turnOff(InstanceReference& reference) { reference.setExpanded(false); }
};

/// Whether it participates in takes.
struct CheckedElement : SwitchElement<CheckedElement> {
    static constexpr const char* kWord = "checked";
    static bool isOn(const InstanceReference& reference) { return reference.isChecked(); }
    static void turnOff(InstanceReference& reference) { reference.setChecked(false, true); }
};

} // namespace MVR
