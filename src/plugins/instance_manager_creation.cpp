#include "plugins/instance_manager.h"

#include "core/base/sdk/error_code.h"
#include "core/base/sdk/log.h"
#include "core/contract/adaptor_interface.h"
#include "core/services/core_services.h"
#include "core/services/fault_list.h"
#include "core/services/tool_list_changes.h"
#include "instance/plugin_instance.h"
#include "plugins/contract/extension_ids.h"
#include "plugins/instance_reference.h"
#include "plugins/instance_reference_restore.h"
#include "plugins/libraries/plugin.h"
#include "plugins/model/instance_loading.h"

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <utility>
#include <vector>

namespace MVR {
namespace {

// The attribute passes of a creation, in their order: first those that change scene objects, then,
// behind the host's undo step, those that don't.
constexpr std::initializer_list<std::uint32_t> kUndoablePasses{
    SaveMask::kRecordedValues | SaveMask::kConfigProfile | SaveMask::kInputProfile |
        SaveMask::kVisible | SaveMask::kMesh | SaveMask::kTransform,
    SaveMask::kParent};
constexpr std::initializer_list<std::uint32_t> kLatePasses{SaveMask::kNodes, SaveMask::kHighPoly,
                                                           SaveMask::kSelection};

/// References, each until it is destroyed: a tool may take itself away at any of its calls.
std::vector<InstanceReference::Watch> watchAll(InstanceReference& top) {
    std::vector<InstanceReference*> references;
    top.collectInstances(references);
    std::vector<InstanceReference::Watch> watches;
    watches.reserve(references.size());
    for (InstanceReference* reference : references)
        watches.emplace_back(reference);
    return watches;
}

/// The elements "MVR_Plugin" below an element, at any depth.
std::size_t countTools(const Tag& top) {
    std::size_t count = 0;
    std::vector<const Tag*> waiting{&top};
    while (!waiting.empty()) {
        const Tag& tag = *waiting.back();
        waiting.pop_back();
        for (std::int32_t i = 0; i < tag.childCount(); ++i)
            if (tag.child(i).hasName("MVR_Plugin")) {
                ++count;
                waiting.push_back(&tag.child(i));
            }
    }
    return count;
}

Tag wrap(Tag data, Log& entry) {
    if (data.hasName("MVR"))
        return data;
    entry.write("Wrapping data in MVR clause");
    Tag wrapper = Tag::element("MVR");
    wrapper.attributeRef("path") = data.attribute("path");
    wrapper.addChild(std::move(data));
    return wrapper;
}

void instantiateAll(CoreServices& services, Tag& wrapper, InstanceReference& holder, Log& entry) {
    const std::string path = wrapper.attribute("path");
    for (std::int32_t i = 0; i < wrapper.childCount(); ++i) {
        if (!wrapper.child(i).hasName("MVR_Plugin"))
            continue;
        std::int32_t error = 0;
        Util::Owned<InstanceReference> reference =
            instantiate(services, wrapper.child(i), error, path);
        if (ErrorCode::instance()->find(error).getType() <= ErrorCode::Error)
            entry.write("Instanciator returned error", Log::Warning);
        else
            holder.add(reference.release());
    }
}

/// Tells the new tools that all of them exist, and ends their creation.
void finishCreation(InstanceReference& holder, Log& entry) {
    entry.write("Sending after create event");
    const std::vector<InstanceReference::Watch> created = watchAll(holder);
    // A tool, or the host, may end others on the way.
    const auto forEach = [&created](auto act) {
        for (const InstanceReference::Watch& each : created)
            if (each.get() != nullptr && each.get()->getInstance() != nullptr)
                act(*each.get());
    };
    forEach([](InstanceReference& each) {
        each.getInstance()->getCode()->extend(ToolExtension::kAfterCreate, 0);
    });
    entry.write("Cleaning up");
    forEach([](InstanceReference& each) { each.getInstance()->setUnderCreation(false); });
    forEach([](InstanceReference& each) { each.nameHighPolyNodes(); });
}

} // namespace

InstanceReference* InstanceManager::create(Tag data, InstanceReference* parent, bool addToRecent) {
    return createAll(std::move(data), parent, addToRecent).first;
}

InstanceManager::Creation InstanceManager::createAll(Tag data, InstanceReference* parent,
                                                     bool addToRecent) {
    const FaultList::Operation operation(getServices().getFaults());
    const ToolListChanges::Scope change(getServices().getToolListChanges());
    Log entry("Creating instance", Log::Notice);
    if (parent == nullptr)
        parent = root_.get();
    entry.write("parent", parent != nullptr ? parent->getLabel() : "(NULL)", Log::OwnLevel);
    Tag wrapper = wrap(std::move(data), entry);
    if (addToRecent)
        addRecent(wrapper);

    entry.write("Instanciating plugins");
    AdaptorInterface& adaptor = *getServices().getAdaptor();
    const InstanceReference::Watch wantedParent(parent);
    Util::Owned<InstanceReference> holder(new InstanceReference);
    adaptor.beginUndo("New Template");
    instantiateAll(getServices(), wrapper, *holder, entry);
    std::vector<InstanceReference*> made;
    holder->collectInstances(made);
    const std::size_t wanted = countTools(wrapper) + 1; // with the holder
    const std::size_t missing = wanted - std::min(wanted, made.size());

    entry.write("Setting object hierarchies");
    entry.write("Setting object attributes");
    for (const std::uint32_t stages : kUndoablePasses)
        (void)holder->applyAttributes(wrapper, stages);
    adaptor.endUndo();
    for (const std::uint32_t stages : kLatePasses)
        (void)holder->applyAttributes(wrapper, stages);

    finishCreation(*holder, entry);

    entry.write("Inserting nodes to tree");
    parent = wantedParent.get() != nullptr ? wantedParent.get() : root_.get();
    InstanceReference* first = nullptr;
    while (!holder->getChildren().empty()) {
        InstanceReference* const last = holder->getChildReference(holder->getChildren().size() - 1);
        holder->GUI::TreeNode::remove(last);
        if (parent != nullptr)
            parent->add(last);
        else if (first != nullptr) // without a tree there is place for one, the root
            first->destroy();
        first = last;
    }
    holder.reset();
    adaptor.redraw();
    if (first != nullptr && parent != nullptr)
        getServices().getToolListChanges().note();
    return {first, missing};
}

InstanceReference* InstanceManager::createByType(const std::string& type, const std::string& name,
                                                 bool addToRecent) {
    Tag data = Plugin::makeData(type);
    data.addChild(Tag::element("name", name));
    return create(std::move(data), nullptr, addToRecent);
}

void InstanceManager::relocate(InstanceReference* dragged, InstanceReference* target) {
    for (const InstanceReference* each = target; each != nullptr; each = each->getParentReference())
        if (each == dragged)
            return;
    const ToolListChanges::Scope change(getServices().getToolListChanges());
    AdaptorInterface& adaptor = *getServices().getAdaptor();
    adaptor.beginUndo("Relocate Oskel Node");
    adaptor.addUndo(new InstanceReferenceMoveRestore(dragged));
    target->add(dragged);
    adaptor.endUndo();
    getServices().getToolListChanges().note();
}

} // namespace MVR
