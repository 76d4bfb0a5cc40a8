#pragma once

#include "instance/plugin_instance.h"
#include "plugins/instance_reference.h"
#include "support/core_fixture.h"

#include <gmock/gmock.h>

#include <string>

namespace MVR::Testing {

/// An attached core with tools that do nothing.
class TreeTest : public CoreTest {
protected:
    static Tag toolData(const std::string& name, const std::string& more = "") {
        return Tag("<MVR_Plugin><type>Empty Plugin</type><name>" + name + "</name>" + more +
                   "</MVR_Plugin>");
    }
    static std::string rigText(const std::string& name, const std::string& more = "") {
        return "<MVR_Plugin><type>Rig</type><name>" + name + "</name>" + more + "</MVR_Plugin>";
    }
    InstanceReference* place(const std::string& name, InstanceReference* parent = nullptr) {
        return core->create(toolData(name), parent, false);
    }
    InstanceReference* find(const std::string& name) const {
        return core->getRoot()->findInstance(name, false, nullptr);
    }

    /// Returns the names of the tools below the root, as "a(b c) d".
    std::string tree() const { return childrenOf(*core->getRoot()); }
    static std::string childrenOf(const InstanceReference& reference) {
        std::string text;
        for (std::size_t i = 0; i < reference.getChildren().size(); ++i) {
            const InstanceReference& child = *reference.getChildReference(i);
            const std::string below = childrenOf(child);
            text += (i == 0 ? "" : " ") + child.getInstanceName();
            text += below.empty() ? "" : "(" + below + ")";
        }
        return text;
    }
    /// Checks that everything borrowed from the scene's objects has been released.
    void expectNothingOut() const {
        for (const auto& each : adaptor.nodes)
            EXPECT_EQ(each->handles + each->resolved + each->snapshots, 0) << each->getName();
    }
    /// Returns what was logged since the last call.
    std::string newLog() {
        const std::string text = Log::getText().substr(logged_);
        logged_ += text.size();
        return text;
    }

private:
    std::size_t logged_ = 0;
};

} // namespace MVR::Testing
