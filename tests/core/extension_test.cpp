// The interfaces that an adaptor gets by CoreInterface::extend().

#include "core/contract/core_extensions.h"
#include "platform/sdk/files.h"
#include "plugins/contract/extension_ids.h"
#include "plugins/contract/tool_identity.h"
#include "plugins/tree_test.h"
#include "support/scripted_tool.h"

#include <functional>
#include <utility>

namespace {

using namespace MVR;
using testing::ElementsAre;
using Testing::identifierOf;

/// A host's node that acts on each change of the list.
struct Listener final : Util::MessageNode {
    explicit Listener(std::function<void()> act) : MessageNode("host"), onChange(std::move(act)) {}
    void receive(Util::Message& message, bool) override {
        if (message.id == CoreTools::kListChanged)
            onChange();
    }
    std::function<void()> onChange;
};

struct ExtensionTest : Testing::TreeTest {
    void SetUp() override {
        TreeTest::SetUp();
        rig = &Testing::ScriptedPlugin::add("Rig");
        rig->properties = {"X", "Y"};
        tools = getTools(*core);
        models = getModels(*core);
        inputs = getInputs(*core);
        faults = getFaults(*core);
        ASSERT_EQ(listener.listenTo(core), 0);
    }
    /// As tree(), but from the contract's list.
    std::string listed(std::int32_t parent = -1) const {
        const std::vector<CoreTool> list = tools->list();
        return below(list, parent);
    }
    static std::string below(const std::vector<CoreTool>& list, std::int32_t parent) {
        std::string text;
        for (std::size_t i = 0; i < list.size(); ++i) {
            if (list[i].parent != parent)
                continue;
            const std::string inner = below(list, static_cast<std::int32_t>(i));
            text += (text.empty() ? "" : " ") + list[i].name;
            text += inner.empty() ? "" : "(" + inner + ")";
        }
        return text;
    }
    std::vector<std::string> faultLines() const {
        std::vector<std::string> lines;
        for (const CoreFault& fault : faults->list())
            lines.push_back(toText(fault));
        return lines;
    }
    std::string write(const std::string& name, const std::string& text) {
        home.write("documents/Oskelworks/Mirvane/" + name, text);
        return home.documents() + "/" + name;
    }

    Testing::ScriptedPlugin* rig = nullptr;
    CoreTools* tools = nullptr;
    CoreModels* models = nullptr;
    CoreInputs* inputs = nullptr;
    CoreFaults* faults = nullptr;
    int changes = 0;
    std::string seen;
    Listener listener{[this] {
        ++changes;
        seen = listed();
    }};
};

TEST_F(ExtensionTest, AreAnsweredUpToTheirVersion) {
    for (std::int32_t id = CoreExtension::kModels; id <= CoreExtension::kTakes; ++id) {
        const std::intptr_t first = core->extend(id, 1);
        EXPECT_NE(first, 0) << id;
        EXPECT_EQ(core->extend(id, 1), first) << id;
        EXPECT_EQ(core->extend(id, 0) | core->extend(id, -1) | core->extend(id, 2), 0) << id;
    }
    EXPECT_EQ(core->extend(CoreExtension::kTakes + 1, 1), 0);
    EXPECT_EQ(tools->getVersion() + models->getVersion() + inputs->getVersion() +
                  faults->getVersion(),
              4);
}

// over 60 lines because the table of steps is one story
TEST_F(ExtensionTest, EachChangeOfTheTreeIsReportedOnceWhenItIsComplete) {
    Testing::ScriptedPlugin& stubborn = Testing::ScriptedPlugin::add("Stubborn");
    stubborn.createResult = 7;
    const std::string model = write("m.prm", "<MVR>" + rigText("m", rigText("n") + rigText("o")) +
                                                 rigText("p") + "</MVR>");
    std::string name;
    const auto create = [&](const char* type, const char* wanted, const char* parent,
                            const char* bindings = "") {
        return tools->create(type, wanted, parent, Tag(bindings), &name);
    };
    const auto undo = [&] { return adaptor.undo() ? 0 : -1; };
    const auto redo = [&] { return adaptor.redo() ? 0 : -1; };
    const auto done = [](auto act) {
        return [act] {
            act();
            return 0;
        };
    };
    const struct {
        std::function<std::int32_t()> act;
        const char* code;
        int changes;
        const char* tree;
    } steps[] = {
        {[&] { return create("Rig", "a", ""); }, "SUCCESS", 1, "a"},
        {[&] { return create("Rig", "a", "a"); }, "SUCCESS", 1, "a(a_01)"},
        {[&] { return create("No Such", "b", ""); }, "PLUGINNOTFOUND", 0, "a(a_01)"},
        {[&] { return create("Root", "b", ""); }, "PLUGINNOTFOUND", 0, "a(a_01)"},
        {[&] { return create("Rig", "b", "b"); }, "MODEL_NOTOOL", 0, "a(a_01)"},
        {[&] { return create("Rig", "b", "", "<x/>"); }, "TOOL_BADPROFILE", 0, "a(a_01)"},
        {[&] { return create("Stubborn", "b", ""); }, "TOOL_NOTCREATED", 0, "a(a_01)"},
        {[&] { return tools->rename("a", " ", &name); }, "TOOL_BADNAME", 0, "a(a_01)"},
        {[&] { return tools->rename("Mirvane", "b", &name); }, "MODEL_NOTOOL", 0, "a(a_01)"},
        {[&] { return tools->rename("a", "a", nullptr); }, "SUCCESS", 0, "a(a_01)"},
        {[&] { return tools->rename("a", "b", &name); }, "SUCCESS", 1, "b(a_01)"},
        {[&] { return tools->rename("a_01", "b", &name); }, "SUCCESS", 1, "b(b_01)"},
        {done([&] { core->getControl().endLabelEdit(find("b"), &(name = "c - Rig")); }), "SUCCESS",
         1, "c(b_01)"},
        {[&] { return models->load(model, "c"); }, "SUCCESS", 1, "c(b_01 p m(n o))"},
        {undo, "SUCCESS", 1, "c(b_01)"},
        {redo, "SUCCESS", 1, "c(b_01 p m(n o))"},
        {done([&] { core->relocate(find("m"), core->getRoot()); }), "SUCCESS", 1,
         "c(b_01 p) m(n o)"},
        {undo, "SUCCESS", 1, "c(b_01 p m(n o))"},
        {[&] { return tools->remove("c", true); }, "SUCCESS", 1, ""},
        {undo, "SUCCESS", 1, "c(b_01 p m(n o))"},
        {[&] { return tools->remove("Mirvane", true); }, "MODEL_NOTOOL", 0, "c(b_01 p m(n o))"},
        {done([&] { (void)find("m")->clone(); }), "SUCCESS", 1, "c(b_01 p m(n o) m_01(n_01 o_01))"},
        {undo, "SUCCESS", 1, "c(b_01 p m(n o))"},
        {done([&] { tools->find("b_01")->extend(InterfaceExtension::kUnplug, 0); }), "SUCCESS", 1,
         "c(p m(n o))"},
        {done([&] { adaptor.clearUndo(); }), "SUCCESS", 0, "c(p m(n o))"},
        {done([&] { core->deleteAllInstances(); }), "SUCCESS", 1, ""},
        {done([&] { core->deleteAllInstances(); }), "SUCCESS", 0, ""},
        {done([&] { core->loadConfiguration(Tag("<MVR>" + rigText("x") + "</MVR>")); }), "SUCCESS",
         1, "x"},
        {done([&] { core->loadConfiguration(Tag("<MVR/>")); }), "SUCCESS", 0, "x"},
    };
    int step = 0;
    for (const auto& each : steps) {
        changes = 0;
        seen = each.tree;
        const std::string code = identifierOf(each.act());
        EXPECT_EQ(code, each.code) << step;
        EXPECT_EQ(changes, each.changes) << step;
        EXPECT_EQ(seen, each.tree) << step << ", in the message";
        EXPECT_EQ(listed(), each.tree) << step;
        EXPECT_EQ(tree(), each.tree) << step++;
    }
}

TEST_F(ExtensionTest, AListenerMayUndoWhatItHearsOf) {
    listener.onChange = [this] {
        const bool isFirst = ++changes == 1;
        EXPECT_EQ(isFirst ? tools->remove("a", true) : 0, 0);
    };
    std::string name;
    EXPECT_EQ(tools->create("Rig", "a", "", Tag(), &name), 0);
    EXPECT_EQ(name + listed(), "a");
    EXPECT_EQ(changes, 2);
    listener.onChange = [this] { adaptor.clearUndo(); }; // in the middle of the host's own undo
    EXPECT_TRUE(adaptor.undo());
    EXPECT_EQ(listed(), "a");
}

TEST_F(ExtensionTest, AToolIsKnownByNameNodesAndSelection) {
    ToolIdentity made;
    rig->onCreate = [&](Testing::ScriptedTool& tool) {
        made = getToolIdentity(*tool.getInterface());
        EXPECT_EQ(tools->find(made.name), nullptr) << "not before it is whole";
        adaptor.makeNode("Eye", nullptr, tool.getInterface());
    };
    ASSERT_EQ(tools->create("Rig", "", "", Tag(), nullptr), 0);
    EXPECT_EQ(made.name + "/" + made.type, "Rig_01/Rig");
    const CoreTool tool = tools->list().at(0);
    EXPECT_EQ(tool.name + "/" + tool.type, "Rig_01/Rig");
    EXPECT_EQ(tool.access, tools->find("Rig_01"));
    EXPECT_THAT(tool.nodes, ElementsAre(adaptor.findNode("Eye")));
    EXPECT_TRUE(tool.isChecked);
    core->setInstanceChecked("Rig_01", false);
    EXPECT_FALSE(tools->list().at(0).isChecked);

    EXPECT_EQ(tools->getSelected(), "");
    EXPECT_EQ(tools->select("Rig_01"), 0);
    EXPECT_EQ(identifierOf(tools->select("none")), "MODEL_NOTOOL");
    EXPECT_EQ(tools->getSelected(), "Rig_01");
    EXPECT_EQ(tools->remove("Rig_01", false), 0);
    EXPECT_EQ(tools->getSelected(), "") << "in the undo list alone";
    EXPECT_FALSE(adaptor.findNode("Eye") == nullptr) << "the scene object stays";
    EXPECT_EQ(tools->select(""), 0);
}

// over 60 lines because the table of faults reads better as a whole
TEST_F(ExtensionTest, FaultsNameModelToolElementAndReason) {
    Testing::ScriptedPlugin& stubborn = Testing::ScriptedPlugin::add("Stubborn");
    stubborn.initResult = 4711;
    adaptor.onMerge = [&](const std::string& path) {
        EXPECT_TRUE(path.find("mute") != std::string::npos ||
                    faults->tell("told.obj: line 3 is no face"));
        return std::vector<Testing::TestNode*>();
    };
    rig->onExtend = [](Testing::ScriptedTool& tool, std::int32_t id, std::intptr_t) {
        if (id == ToolExtension::kAfterCreate && tool.getName() == "shy")
            tool.getInterface()->extend(43, 0);
        return std::intptr_t{0};
    };
    write("told.obj", "x");
    write("mute.obj", "x");
    const std::string folder = " in " + home.documents();
    const auto merge = [&](const char* name, const char* file) {
        return rigText(name, std::string("<highpoly><option><compatible>Stage</compatible><file>") +
                                 file + "</file></option></highpoly>");
    };
    const struct {
        const char* name;
        std::string text;
        const char* code;
        std::vector<std::string> faults;
    } cases[] = {
        {"cut.prm",
         "<MVR>\n<a></b>",
         "MODEL_UNREADABLE",
         {home.documents() + "/cut.prm: line 2, column 6: a close tag of another element"}},
        {"html.prm",
         "<html/>",
         "MODEL_INVALID",
         {home.documents() + "/html.prm: it holds no model"}},
        {"none.prm",
         "<MVR/>",
         "MODEL_NOTHINGCREATED",
         {home.documents() + "/none.prm: no tool of it could be made"}},
        {"kind.prm",
         rigText("a", "<MVR_Plugin><type>No</type><name>b</name></MVR_Plugin>"),
         "MODEL_INCOMPLETE",
         {"Model a" + folder + ", tool b, type: there is no such kind of tool: No"}},
        {"above.prm",
         "<MVR_Plugin><type>No</type><name>b</name>" + rigText("a", rigText("c")) + "</MVR_Plugin>",
         "MODEL_NOTHINGCREATED",
         {"Model b" + folder + ", tool b, type: there is no such kind of tool: No",
          "Model b" + folder + ", tool a, MVR_Plugin: the tool above it can't be created",
          "Model b" + folder + ", tool c, MVR_Plugin: the tool above it can't be created"}},
        {"shy.prm",
         rigText("g", rigText("shy", rigText("h"))),
         "MODEL_INCOMPLETE",
         {"Model g" + folder + ", tool h, MVR_Plugin: it was removed again",
          "Model g" + folder + ", tool shy, MVR_Plugin: it was removed again"}},
        {"init.prm",
         "<MVR_Plugin><type>Stubborn</type><name>c</name></MVR_Plugin>",
         "MODEL_NOTHINGCREATED",
         {"Model c" + folder +
          ", tool c, MVR_Plugin: instance init returned error: (Error code not found)"}},
        {"told.prm",
         merge("d", "told.obj"),
         "SUCCESS",
         {"Model d" + folder + ", tool d, highpoly: told.obj: line 3 is no face"}},
        {"mute.prm",
         merge("e", "mute.obj"),
         "SUCCESS",
         {"Model e" + folder + ", tool e, highpoly: the host can't merge " +
          Platform::canonicalPath(home.documents()) + "/mute.obj"}},
        {"good.prm", rigText("f"), "SUCCESS", {}},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(identifierOf(models->load(write(each.name, each.text), "")), each.code)
            << each.name;
        EXPECT_EQ(faultLines(), each.faults) << each.name;
        for (const CoreFault& fault : faults->list())
            EXPECT_EQ(fault.isToolMissing, fault.element == "type" || fault.element == "MVR_Plugin")
                << each.name;
    }
    EXPECT_NE(tools->create("Stubborn", "", "", Tag(), nullptr), 0);
    ASSERT_EQ(faults->list().size(), 1U);
    EXPECT_EQ(faults->list()[0].code, 4711) << "the tool's own";
    EXPECT_FALSE(faults->tell("too late"));
    EXPECT_EQ(faults->list().size(), 1U);
    EXPECT_NE(tools->create("Stubborn", "", "nobody", Tag(), nullptr), 0);
    EXPECT_TRUE(faults->list().empty()) << "those of the creation before";
    EXPECT_NE(models->save("", home.documents() + "/no/such.prm"), 0);
    EXPECT_EQ(faults->list().at(0).model, home.documents() + "/no/such.prm");

    // A tool that creates others: all of it is one operation.
    rig->onCreate = [&](Testing::ScriptedTool& tool) {
        EXPECT_NE(tools->create("No", tool.getName() + "'s", "", Tag(), nullptr), 0);
    };
    core->loadConfiguration(
        Tag("<MVR><MVR_Plugin><type>Gone</type></MVR_Plugin>" + rigText("outer") + "</MVR>"));
    EXPECT_THAT(
        faultLines(),
        ElementsAre("Model Gone, tool Gone, type: there is no such kind of tool: Gone",
                    "Model outer's, tool outer's, type: there is no such kind of tool: No"));
}

TEST_F(ExtensionTest, TheHostMayActInEachOfItsOwnCalls) {
    rig->onCreate = [&](Testing::ScriptedTool& tool) {
        tool.getInterface()->createNode("Eye", kNodeHelper, 0);
    };
    const std::string model = write("m.prm", rigText("m", rigText("n")));
    const std::function<void()> acts[] = {
        [&] { (void)tools->create("Rig", "b", "a", Tag(), nullptr); },
        [&] { (void)tools->create("No", "b", "a", Tag(), nullptr); },
        [&] { (void)models->load(model, "a"); },
        [&] { (void)tools->rename("a", "c", nullptr); },
        [&] { (void)tools->remove("a", true); },
        [&] { (void)tools->setBindings("a", tools->getBindings("a"), nullptr); },
        [&] { (void)tools->getExactConfiguration(); },
        [&] { core->loadConfiguration(Tag("<MVR>" + rigText("d") + "</MVR>")); },
        [&] { core->deleteAllInstances(); },
    };
    const char* const calls[] = {"beginUndo",        "addUndo", "endUndo", "createNode Eye 0",
                                 "recordingStarted", "setTime", "redraw",  "recordingFinished"};
    for (const char* place : calls)
        for (std::size_t act = 0; act < std::size(acts); ++act) {
            SCOPED_TRACE(std::string(place) + " " + std::to_string(act));
            bool hasActed = false;
            adaptor.onCall = [&](const std::string& call) {
                if (call.rfind(place, 0) == 0 && !std::exchange(hasActed, true))
                    acts[act]();
            };
            (void)tools->create("Rig", "a", "", Tag(), nullptr);
            (void)core->startRecording();
            core->stopRecording();
            (void)core->resimulate(0, 0.2);
            EXPECT_TRUE(hasActed);
            adaptor.onCall = nullptr;
            EXPECT_EQ(listed(), tree());
            while (adaptor.undo()) {
            }
            while (adaptor.redo()) {
            }
            EXPECT_EQ(listed(), tree());
            adaptor.clearUndo();
            core->deleteAllInstances();
            adaptor.nodes.clear();
            EXPECT_EQ(listed(), "");
        }
}

TEST_F(ExtensionTest, NothingIsCreatedOrChangedWhenTheAttachmentEnds) {
    ASSERT_EQ(tools->create("Rig", "a", "", Tag(), nullptr), 0);
    const std::string model = write("m.prm", rigText("m"));
    adaptor.clearUndo();
    changes = 0;
    bool hasCome = false;
    adaptor.onCall = [&](const std::string& call) {
        if (call != "detachNotify")
            return;
        hasCome = true;
        EXPECT_TRUE(tools->list().empty() && tools->find("a") == nullptr);
        const std::int32_t codes[] = {tools->create("Rig", "b", "", Tag(), nullptr),
                                      tools->rename("a", "b", nullptr),
                                      tools->remove("a", true),
                                      tools->select("a"),
                                      tools->setBindings("a", Tag("<profile/>"), nullptr),
                                      tools->setMapping("a", Tag("<property/>")),
                                      models->load(model, ""),
                                      models->save("", model)};
        for (const std::int32_t code : codes)
            EXPECT_EQ(identifierOf(code), "CORE_DETACHING");
        EXPECT_TRUE(tools->getBindings("a").isEmpty() && tools->getExactConfiguration().isEmpty());
        EXPECT_EQ(tools->getSelected(), "");
        EXPECT_TRUE(tools->listInputs("a").empty());
        core->loadConfiguration(Tag("<MVR>" + rigText("x") + "</MVR>"));
        core->deleteAllInstances();
        (void)inputs->list();
        EXPECT_FALSE(faults->tell("late"));
    };
    EXPECT_EQ(detachCore(core), 0);
    EXPECT_TRUE(hasCome);
    EXPECT_EQ(changes, 0);
    EXPECT_EQ(listener.getSourceCount(), 0) << "the core has left it";
    adaptor.onCall = nullptr;
    core = static_cast<CoreImplementation*>(attachAdaptor(&adaptor));
}

} // namespace
