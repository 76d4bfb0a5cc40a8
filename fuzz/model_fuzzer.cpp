// Loads the bytes of a model or a scene into a host with nodes, meshes and detailed models, and
// with tools that keep a block. The result is saved with every bit of the mask and comes back from
// that. An undo removes it, and nothing that was lent stays out.

#include "data/sdk/byte_buffer.h"
#include "host.h"
#include "plugins/instance_reference.h"
#include "unidevice/sdk/control.h"

#include <fstream>
#include <string>
#include <vector>

namespace {

using namespace MVR;
using MVR::Testing::TestNode;

constexpr std::uint32_t kEverything = 0x00FFFF;

/// Keeps a block, and refuses some.
class Rig final : public CCamera {
public:
    using CCamera::CCamera;

    std::int32_t init() override {
        getInterface()->addProperty("Move", UniDevice::finite, nullptr);
        return 0;
    }
    std::int32_t create() override {
        return getInterface()->createNode("Node", 0, 0) != nullptr ? 0 : 1;
    }
    std::int32_t load() override {
        const void* bytes = nullptr;
        const std::int32_t size = getInterface()->getSaveData(&bytes);
        block_.assign(static_cast<const char*>(bytes), static_cast<std::size_t>(size));
        return block_ == "refused" ? 1 : 0;
    }
    std::int32_t save() override {
        getInterface()->setSaveData(block_.data(), static_cast<std::int32_t>(block_.size()));
        return 0;
    }

private:
    std::string block_;
};

/// With two kinds of tools, one of which saves selections, and with a detailed model.
struct ModelHost : Host {
    ModelHost() {
        for (const char* name : {"Rig", "PRM"})
            addKind<Rig>(name);
        std::ofstream(folder + "/detail.obj") << "o shell\n";
        adaptor.onMerge = [this](const std::string&) {
            TestNode& shell = adaptor.makeNode("shell", nullptr);
            return std::vector<TestNode*>{&shell, &adaptor.makeNode("glass", &shell)};
        };
    }

    /// Checks that there is no circle and that everything lent was returned.
    void checkNodes() const {
        for (const auto& node : adaptor.nodes) {
            require(node->handles == 0 && node->resolved == 0 && node->snapshots == 0);
            const TestNode* slow = node.get();
            for (const TestNode* each = slow; each != nullptr && each->parent != nullptr;
                 each = each->parent->parent, slow = slow->parent)
                require(each->parent != slow);
        }
    }

    const std::string folder = inputFolder(); ///< where the models come from
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static ModelHost& host = *new ModelHost;
    CoreImplementation& core = *host.core;
    Tag model(std::string(ByteBuffer(data, size).decompress().view()));
    if (!model.isEmpty())
        model.attributeRef("path") = host.folder;
    core.create(model, nullptr, false);
    host.checkNodes();
    const std::size_t count = host.toolCount();
    core.getRoot()->setHighPolyVisible(true);
    core.getRoot()->setLowPolyVisible(false);

    Tag everything;
    core.getRoot()->save(everything, kEverything);
    const Tag configuration = core.getConfiguration();
    Tag packed;
    for (std::size_t i = 0; i < core.getRoot()->getChildren().size(); ++i)
        core.getRoot()->getChildReference(i)->save(packed, SaveMask::kOwnRequest);
    host.checkNodes();

    // The scene stays and its tools come back to it, each to the nodes that it had.
    core.deleteAllInstances();
    host.adaptor.clearUndo();
    core.loadConfiguration(configuration);
    host.checkNodes();
    require(host.toolCount() <= count);
    host.undoAll();
    require(host.toolCount() == 0);
    host.redoAll();
    host.clear();
    core.create(everything, nullptr, false);
    core.create(packed, nullptr, false);
    host.checkNodes();
    host.clear();
    return 0;
}
