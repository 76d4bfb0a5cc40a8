// The user's changes of the tree, undone, redone and undone, while the host drops its steps at any
// point.

#include "plugins/libraries/library_manager.h"
#include "plugins/tree_test.h"
#include "support/scripted_device.h"
#include "support/scripted_tool.h"
#include "unidevice/sdk/device_handler.h"

#include <functional>

namespace {

using namespace MVR;
using Testing::ScriptedPlugin;
using Testing::ScriptedTool;

struct UndoTest : Testing::TreeTest {
    void SetUp() override {
        TreeTest::SetUp();
        rig = &ScriptedPlugin::add("Rig");
        rig->properties = {"Move"};
        rig->onInit = [](ScriptedTool& tool) {
            CInterface::VirtualControlRecord record{"Speed", 0, UniDevice::finite};
            tool.getInterface()->extend(41, reinterpret_cast<std::intptr_t>(&record));
            tool.getInterface()->createNode("Node", kNodeHelper, 0);
        };
        axis = (new Testing::ScriptedDevice("Box"))->add("X"); // the handler's
    }

    InstanceReference& placeRig(const std::string& name, InstanceReference* below) {
        InstanceReference& reference = *core->create(Tag(rigText(name)), below, false);
        reference.getInstance()->findProperty("Move")->bind(axis);
        return reference;
    }
    /// Returns the tree, and those of its tools that aren't among the inputs or have lost their
    /// binding.
    std::string state() const {
        std::string text = tree();
        const UniDevice::DeviceHandler& handler = *UniDevice::DeviceHandler::instance();
        for (PluginInstance* tool : core->getInstances(false)) {
            if (tool->getName().find("new") == 0)
                continue;
            if (handler.indexOf(tool) < 0)
                text += ", no device " + tool->getName();
            if (tool->findProperty("Move")->control != axis)
                text += ", unbound " + tool->getName();
        }
        return text;
    }
    std::size_t devices() const { return UniDevice::DeviceHandler::instance()->devices.size(); }

    ScriptedPlugin* rig = nullptr;      // the core's
    UniDevice::Control* axis = nullptr; // its device's
};

TEST_F(UndoTest, EveryChangeIsUndoneAndRedoneAndMayBeDroppedInEachState) {
    const std::string start = "a(b(b1 b2) c) d";
    const struct {
        const char* name;
        std::function<void()> act;
        const char* done;
    } acts[] = {
        {"create",
         [this] {
             core->create(toolData("new", toolData("new2").toText("", "", "")), find("b"), false);
         },
         "a(b(b1 b2 new(new2)) c) d"},
        {"delete", [this] { find("b")->remove(true); }, "a(c) d"},
        {"move", [this] { core->relocate(find("b"), find("d")); }, "a(c) d(b(b1 b2))"},
        {"move within", [this] { core->relocate(find("b"), find("a")); }, "a(c b(b1 b2)) d"},
        {"clone",
         [this] {
             find("b")->clone()->setLabel("new"); // it has the bindings of its source
             EXPECT_EQ(find("new")->getInstance()->findProperty("Move")->control, axis);
         },
         "a(b(b1 b2) c new(b1_01 b2_01)) d"},
        {"unplug", [this] { find("b1")->getInstance()->unplug(false); }, "a(b(b2) c) d"},
        {"unplug all", [this] { core->getRoot()->remove(false); }, ""},
    };
    for (const auto& each : acts)
        for (int steps = 0; steps < 4; ++steps) {
            InstanceReference& a = placeRig("a", nullptr);
            InstanceReference& b = placeRig("b", &a);
            placeRig("b1", &b);
            placeRig("b2", &b);
            placeRig("c", &a);
            placeRig("d", nullptr);
            adaptor.clearUndo();
            ASSERT_EQ(state(), start);
            const std::size_t allDevices = devices();
            each.act();
            EXPECT_EQ(state(), each.done) << each.name;
            ASSERT_EQ(adaptor.undoNames().size(), 1U) << each.name;
            for (int step = 1; step <= steps; ++step) {
                EXPECT_TRUE(step % 2 == 1 ? adaptor.undo() : adaptor.redo());
                EXPECT_EQ(state(), step % 2 == 1 ? start : each.done) << each.name << step;
                EXPECT_TRUE(step % 2 == 0 || devices() == allDevices) << each.name << step;
            }
            const std::string before = state();
            adaptor.clearUndo();
            EXPECT_EQ(state(), before) << each.name << steps;
            EXPECT_EQ(LibraryManager::instance()->getInstanceCount(core),
                      static_cast<std::int32_t>(core->getInstances(false).size()) + 1)
                << "with the root, and nothing is left waiting";
            core->deleteAllInstances();
            adaptor.nodes.clear();
        }
}

TEST_F(UndoTest, AToolThatComesBackLeavesItsNameToWhoeverHasItNow) {
    InstanceReference& a = placeRig("a", nullptr);
    placeRig("b", nullptr);
    adaptor.clearUndo();
    a.remove(false);
    find("b")->setLabel("a"); // no step of the host
    EXPECT_TRUE(adaptor.undo());
    EXPECT_EQ(state(), "a_01 a");
}

} // namespace
