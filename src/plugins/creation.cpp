#include "plugins/creation.h"

#include "core/base/error_codes.h"
#include "core/base/sdk/log.h"
#include "core/contract/adaptor_interface.h"
#include "core/services/core_services.h"
#include "core/services/fault_list.h"
#include "core/services/tool_list_changes.h"
#include "instance/plugin_instance.h"
#include "plugins/contract/extension_ids.h"
#include "plugins/contract/model_words.h"
#include "plugins/instance_manager.h"
#include "plugins/instance_reference.h"
#include "plugins/model/elements/table.h"
#include "plugins/model/instance_loading.h"
#include "plugins/model/model_file.h"
#include "plugins/recent_list.h"

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace MVR {
namespace {

/// References, each until it is destroyed: a tool may remove itself in any of its calls.
std::vector<InstanceReference::Watch> watchAll(InstanceReference& top) {
    std::vector<InstanceReference*> references;
    top.collectInstances(references);
    std::vector<InstanceReference::Watch> watches;
    watches.reserve(references.size());
    for (InstanceReference* reference : references)
        watches.emplace_back(reference);
    return watches;
}

/// One creation under way. While the tools are made they are below a holder, outside of the tree;
/// each may begin another creation meanwhile.
class Creation {
public:
    Creation(CoreServices& services, Tag data, InstanceReference* parent, RecentList* recent,
             InsertOrder order)
        : services_(services), order_(order), parent_(parent) {
        InstanceReference* const below = place();
        entry_.write("parent", below != nullptr ? below->getLabel() : "(NULL)", Log::OwnLevel);
        wrap(std::move(data));
        if (recent != nullptr)
            recent->add(wrapper_);
    }

    Created run() {
        entry_.write("Instanciating plugins");
        AdaptorInterface& adaptor = *services_.getAdaptor();
        adaptor.beginUndo("New Template");
        instantiateAll();

        entry_.write("Setting object hierarchies");
        entry_.write("Setting object attributes");
        // First what changes scene objects; after the host's undo step the rest.
        for (const Moment pass : {Moment::Attributes, Moment::Parents})
            (void)holder_->applyAttributes(wrapper_, bitsOf(pass));
        adaptor.endUndo();
        for (const std::uint32_t stages :
             {SaveMask::kNodes, bitsOf(Moment::HighPolyNames), bitsOf(Moment::Selection)})
            (void)holder_->applyAttributes(wrapper_, stages);

        finish();
        const std::size_t missing = tellMissing();
        InstanceReference* const first = insert();
        holder_.reset();
        adaptor.redraw();
        return {first, missing};
    }

private:
    /// Returns what the tools come below: a parent that left the tree can't have them. Null while
    /// there is no root.
    [[nodiscard]] InstanceReference* place() const {
        InstanceReference* const parent = parent_.get();
        return parent != nullptr && parent->isInTree() ? parent : services_.getTree().getRoot();
    }
    void wrap(Tag data);
    void instantiateAll();
    void finish();
    [[nodiscard]] std::size_t tellMissing();
    InstanceReference* insert();

    CoreServices& services_;
    const InsertOrder order_;
    const FaultList::Operation operation_{services_.getFaults()};
    const ToolListChanges::Scope change_{services_.getToolListChanges()};
    Log entry_{"Creating instance", Log::Notice};
    InstanceReference::Watch parent_; // null: the root
    Tag wrapper_;                     // the data, in an element "MVR"
    std::string folder_;              // of the model
    Util::Owned<InstanceReference> holder_{new InstanceReference};
    std::vector<PlannedTool> planned_;
    std::size_t textLeft_ = kMostModelTextBytes; // for packed tools within packed ones
};

void Creation::wrap(Tag data) {
    if (data.hasName(ModelWord::kTree)) {
        wrapper_ = std::move(data);
        return;
    }
    entry_.write("Wrapping data in MVR clause");
    wrapper_ = Tag::element(ModelWord::kTree);
    wrapper_.attributeRef(kModelFolder) = data.attribute(kModelFolder);
    wrapper_.addChild(std::move(data));
}

void Creation::instantiateAll() {
    folder_ = wrapper_.attribute(kModelFolder);
    for (std::int32_t i = 0; i < wrapper_.childCount(); ++i) {
        if (!wrapper_.child(i).hasName(ModelWord::kTool))
            continue;
        std::int32_t error = 0;
        Util::Owned<InstanceReference> reference =
            instantiate(services_, wrapper_.child(i), error, folder_, planned_, textLeft_);
        if (ErrorCode::instance()->find(error).getType() <= ErrorCode::Error)
            entry_.write("Instanciator returned error", Log::Warning);
        else
            holder_->add(reference.release());
    }
}

/// Tells the new tools that all of them exist, and ends their creation.
void Creation::finish() {
    entry_.write("Sending after create event");
    const std::vector<InstanceReference::Watch> created = watchAll(*holder_);
    // A tool, or the host, may destroy others meanwhile.
    const auto forEach = [&created](auto act) {
        for (const InstanceReference::Watch& each : created)
            if (each.get() != nullptr && each.get()->getInstance() != nullptr)
                act(*each.get());
    };
    forEach([](InstanceReference& each) {
        each.getInstance()->getTool().extend(ToolExtension::kAfterCreate, 0);
    });
    entry_.write("Cleaning up");
    forEach([](InstanceReference& each) { each.getInstance()->setUnderCreation(false); });
    forEach([](InstanceReference& each) { each.nameHighPolyNodes(); });
}

/// Counts the tools of the data that aren't there; each has a fault that tells why.
std::size_t Creation::tellMissing() {
    std::vector<InstanceReference*> made;
    holder_->collectInstances(made);
    std::sort(made.begin(), made.end());
    std::size_t missing = 0;
    for (PlannedTool& tool : planned_) {
        // The host's undo list may keep one that was removed.
        if (std::binary_search(made.begin(), made.end(), tool.reference.get()))
            continue;
        ++missing;
        if (!tool.place.isMissingTold())
            tool.place.logMissing(ModelWord::kTool, "it was removed again",
                                  reportCode(Codes::kToolGone));
    }
    return missing;
}

/// Moves the tools from the holder into the tree. Returns the first one of the data.
InstanceReference* Creation::insert() {
    entry_.write("Inserting nodes to tree");
    InstanceReference* const parent = place();
    // Inserting at a fixed place turns the order round.
    const std::int32_t end =
        parent != nullptr ? static_cast<std::int32_t>(parent->getChildren().size()) : 0;
    InstanceReference* first = nullptr;
    while (!holder_->getChildren().empty()) {
        InstanceReference* const last =
            holder_->getChildReference(holder_->getChildren().size() - 1);
        holder_->GUI::TreeNode::remove(last);
        if (parent != nullptr && order_ == InsertOrder::AsInData)
            parent->insert(last, end);
        else if (parent != nullptr)
            parent->add(last);
        else if (first != nullptr) // without a tree there is room for one, the root
            first->destroy();
        first = last;
    }
    if (first != nullptr && parent != nullptr)
        services_.getToolListChanges().note();
    return first;
}

} // namespace

Created createTools(CoreServices& services, Tag data, InstanceReference* parent, RecentList* recent,
                    InsertOrder order) {
    return Creation(services, std::move(data), parent, recent, order).run();
}

std::int32_t createFromModel(CoreServices& services, const std::string& path,
                             InstanceReference* parent, RecentList& recent) {
    FaultList& faults = services.getFaults();
    const FaultList::Operation operation(faults);
    Tag model;
    if (!readModelFile(path, model, &faults))
        return reportCode(Codes::kModelUnreadable);
    if (!model.hasName(ModelWord::kTree) && !model.hasName(ModelWord::kTool)) {
        Log(Log::Error).write("No model in file", path, Log::OwnLevel);
        const std::int32_t code = reportCode(Codes::kModelInvalid);
        faults.add({path, "", "", "it holds no model", code});
        return code;
    }
    const Created created = createTools(services, std::move(model), parent, &recent);
    if (created.first == nullptr) {
        Log(Log::Error).write("Nothing created from model", path, Log::OwnLevel);
        const std::int32_t code = reportCode(Codes::kModelNothingCreated);
        if (created.missing == 0)
            faults.add({path, "", "", "no tool of it could be made", code});
        return code;
    }
    if (created.missing == 0)
        return 0;
    Log(Log::Warning)
        .write("Tools missing from model " + path, static_cast<std::int32_t>(created.missing),
               Log::OwnLevel);
    return reportCode(Codes::kModelIncomplete);
}

} // namespace MVR
