// The runtime of one placed tool.
#pragma once

#include "core/messages/sdk/message_node.h"
#include "core/util/sdk/dynamic_object.h"
#include "data/sdk/tag.h"
#include "instance/combo_updater.h"
#include "instance/instance_inputs.h"
#include "instance/instance_panel.h"
#include "instance/plugin_instance_virtual_device.h"
#include "instance/saved_block.h"
#include "instance/stored_input.h"
#include "instance/tool_object.h"
#include "instance/virtual_controls.h"
#include "plugins/contract/c_interface.h"
#include "plugins/libraries/instance_maker.h"
#include "recording/values/take_source.h"

#include <cstdint>
#include <string>
#include <vector>

namespace MVR {

class AdaptorInterface;
class ConfigProfileManager;
class CoreImplementation;
class CoreServices;
class InputProfileManager;
class InstanceReference;
class Plugin;

/// The core's side of one placed tool. To the tool it is its CInterface; to the input layer a
/// device with the tool's virtual controls; to the tree what a reference stands for; to the
/// recorder what is prepared, stepped and finished. Owns the tool object and the parts that hold
/// what the tool has of the core: inputs, stored input, panel, saved block and virtual controls.
/// Host thread only.
///
/// 1. Plugin::createInstance() makes it, outside the tree.
/// 2. A reference stands for it (setReference); extensions 52, init, create or load follow.
/// 3. Takes: prepareRecording(), step() for each frame, finishRecording().
/// 4. It is destroyed with its reference, and its reference with it.
class PluginInstance final : public PluginInstanceVirtualDevice,
                             public CInterface,
                             public Util::MessageNode {
public:
    using VirtualControl = MVR::VirtualControl;
    using COREComboUpdater = MVR::COREComboUpdater;

    /// What applyInputProfile() returns for a tag that isn't a profile.
    static constexpr std::int32_t kNoProfile = InstanceInputs::kNoProfile;
    /// Broadcast when the bindings of the input properties were replaced.
    static constexpr std::int32_t kInputProfileApplied = 154;

    /// An empty `name` stands for that of the plug-in plus "_01". A name in use is made unique.
    PluginInstance(CoreImplementation* core, CoreServices& services, Plugin* plugin,
                   const std::string& name);
    /// Destroys the reference and the tool; the scene objects stay.
    ~PluginInstance() override;

    /// Returns the instance's name, unique among the tools in the tree.
    [[nodiscard]] std::string getName() const override { return name; }
    /// Makes `wanted` the name, with a number that makes it unique if another tool has it.
    void setName(std::string wanted) override;
    /// Returns the name that the tool has in the data it is made from.
    [[nodiscard]] const std::string& getNameFromData() const { return nameFromData_; }
    void setNameFromData(const std::string& dataName) { nameFromData_ = dataName; }
    /// Returns true while the creation that makes it runs.
    [[nodiscard]] bool isUnderCreation() const { return underCreation_; }
    void setUnderCreation(bool underCreation) { underCreation_ = underCreation; }

    /// `reference` stands for this instance from now on. A second one is logged, and still replaces
    /// the first.
    void setReference(InstanceReference* reference);
    [[nodiscard]] InstanceReference* getReference() const { return reference_; }
    /// The reference ends: destroys this instance, unless that has begun already.
    void clearReference();
    /// Returns true if it has a reference that is in the tree.
    [[nodiscard]] bool isInTree() const;
    /// For the reference, after its in-tree flag changed: reserves the name or frees it.
    void updateNameUse();
    /// Removes the tool from the tree as an undoable step; with `deleteScene` its scene objects are
    /// deleted too.
    void unplug(bool deleteScene);

    [[nodiscard]] CoreImplementation* getCore() const { return core_; }
    [[nodiscard]] CoreServices& getServices() const { return services_; }
    [[nodiscard]] Plugin* getPlugin() const { return plugin_; }
    /// The tool object, or null if the plug-in made none.
    [[nodiscard]] CCamera* getCode() const { return tool_.get(); }
    /// What all calls of it go through.
    [[nodiscard]] ToolObject& getTool() { return tool_; }
    [[nodiscard]] std::string getPluginKey() const;

    /// Makes the tool select its object in the host. Returns its answer, or 0 if it can't.
    std::int32_t selectObject();
    /// Lets the tool fill `out`, an element that is there, with what it wants saved; returns `out`.
    Tag& getCustomData(Tag& out);
    void setCustomData(Tag data);
    /// Returns true if the tool described a panel with a control in it.
    [[nodiscard]] bool hasPanel() const { return panel_.hasControls(); }
    /// The host's time changed outside of a take.
    void timeChanged(double time);

    /// Returns the presets of this tool: a list of its own, or else the plug-in's.
    [[nodiscard]] ConfigProfileManager& getConfigProfiles();
    [[nodiscard]] InputProfileManager& getInputProfiles();
    /// Returns the values of its panel; see InstancePanel.
    [[nodiscard]] Tag getConfigProfile(const std::string& profileName) const;
    void applyConfigProfile(const Tag& profile);
    /// Returns the bindings of its inputs and their parameters; see InstanceInputs.
    [[nodiscard]] Tag getInputProfile(const std::string& profileName, bool isExact = false);
    /// Broadcasts `kInputProfileApplied`, unless it returns `kNoProfile`.
    std::int32_t applyInputProfile(const Tag& profile);

    [[nodiscard]] const UniDevice::PropertyHandler& getProperties() const {
        return inputs_.getProperties();
    }
    /// Returns the raw input of its takes.
    [[nodiscard]] StoredInput& getStoredInput() { return storedInput_; }

    /// A take begins at `time`, with input from `source`: the tool starts, then its scene nodes and
    /// its stored input. `isInTake` tells whether the tool of a device participates. If the tool
    /// throws, it sits out the rest of the take, but for its input and finishRecording().
    void prepareRecording(double time, TakeSource source, const StoredInput::IsInTake& isInTake);
    /// A frame begins: puts the input of a resimulation in place, before devices are polled.
    void playInput(double time) { storedInput_.play(time); }
    /// The devices were polled: the input stays as it is now until releaseInput().
    void holdInput(double time);
    /// Lets the tool record the frame.
    void step(double time);
    [[nodiscard]] bool isSittingOut() const { return tool_.isSittingOut(); }
    void releaseInput() { storedInput_.release(); }
    /// Finishes the tool, unless it isn't prepared.
    void finishRecording(double time);

    // UniDevice::Device
    [[nodiscard]] std::int32_t controlCount() const override;
    [[nodiscard]] UniDevice::Control* control(std::int32_t index) override;
    bool update(std::int32_t reserved) override;
    bool prepareDetection() override { return false; }
    UniDevice::Control* detectControl(const std::vector<UniDevice::Control*>* excluded,
                                      void* context) override;
    void resetControls() override {}
    bool activate(std::int32_t reserved) override;
    bool deactivate(std::int32_t reserved) override;

    // CExtendable
    std::intptr_t extend(std::int32_t id, std::intptr_t data) override;
    std::vector<std::int32_t> getExtensions() override;

    // CInterface
    void addUndo(CUndo* object) override;
    UniDevice::Property* addProperty(std::string propertyName, std::int32_t acceptedKinds,
                                     UniDevice::Property::Factory* factory) override;
    UniDevice::Property* findProperty(std::string propertyName) override;
    void beginPanel() override;
    void endPanel() override;
    void beginGroup(std::string label, std::string tooltip) override;
    void endGroup() override;
    void addSpinnerInt(std::string label, std::string tooltip, std::int32_t* variable,
                       std::int32_t minimum, std::int32_t maximum, std::int32_t step,
                       std::int32_t triggerLength, bool input, std::intptr_t unused,
                       Callback* callback) override;
    void addSpinner(std::string label, std::string tooltip, double* variable, double minimum,
                    double maximum, double step, std::int32_t triggerLength, bool input,
                    std::intptr_t unused, Callback* callback) override;
    void addCheck(std::string label, std::string tooltip, bool* variable,
                  Callback* callback) override;
    void addText(std::string label, std::string tooltip, std::string* variable,
                 Callback* callback) override;
    ComboUpdater* addCombo(std::string label, std::string tooltip, std::vector<std::string> choices,
                           std::string* variable, Callback* callback) override;
    void addButton(std::string label, std::string tooltip, Callback* callback) override;
    void openConfiguration() override;
    void updatePanel() override;
    std::intptr_t openInputDialog() override;
    std::string getDataPath() override;
    void setSaveData(const void* bytes, std::int32_t size) override;
    std::int32_t getSaveData(const void** address) override;
    void clearSaveData() override;
    void destroyNode(SceneNode* node, std::intptr_t unused) override;
    SceneNode* createNode(std::string nodeName) override;
    SceneNode* createNode(std::string nodeName, std::intptr_t kind, std::intptr_t parent) override;
    SceneNode* createNode(std::string nodeName, std::intptr_t kind, std::intptr_t mesh,
                          std::intptr_t parent) override;
    void createNode(std::string nodeName, CMesh mesh) override;
    TransformSnapshot* getSnapshot(SceneNode* node, double time) override;
    HelperSnapshot* getHelperSnapshot(SceneNode* node) override;
    MeshSnapshot* getMeshSnapshot(SceneNode* node, double time) override;
    std::intptr_t getLensSnapshot(SceneNode* node, double time) override;
    std::intptr_t nodeQuery1(SceneNode* node) override;
    std::intptr_t nodeQuery2(SceneNode* node) override;
    std::intptr_t nodeQuery3(SceneNode* node) override;
    std::intptr_t nodeQuery4(SceneNode* node) override;
    std::intptr_t nodeQuery5(SceneNode* node) override;
    double getTime() override;
    double getFrameRate() override;
    double getFrameStep() override;
    void redraw() override;
    std::int32_t messageBox(std::string text, std::string title, std::int32_t flags) override;

private:
    [[nodiscard]] AdaptorInterface* adaptor() const;
    template <class Visit>
    void forEachNode(const char* operation, Visit visit);

    /// The entry of this instance in the plug-in's list.
    class Membership final : public PluginMember {
    public:
        explicit Membership(PluginInstance& instance) : instance_(instance) {}
        [[nodiscard]] PluginInstance* getInstance() const override { return &instance_; }
        [[nodiscard]] CoreImplementation* getCore() const override { return instance_.core_; }
        void end() override { instance_.destroy(); }

    private:
        PluginInstance& instance_;
    };

    template <class Snapshot>
    Snapshot* opened(Snapshot* snapshot, SceneNode& node, OpenSnapshots::Kind kind);
    void closing(const SceneNode* node, OpenSnapshots::Kind kind);
    UniDevice::Control* addVirtualControl(const VirtualControlRecord& record);

    InstanceReference* reference_ = nullptr; // not owned
    Plugin* plugin_;                         // not owned
    Membership membership_{*this};
    CoreImplementation* core_;
    CoreServices& services_;
    ToolObject tool_{services_, *plugin_, name};
    InstanceInputs inputs_;
    StoredInput storedInput_{inputs_};
    InstancePanel panel_;
    SavedBlock savedBlock_;
    std::string nameFromData_;
    bool underCreation_ = false;
    bool unplugging_ = false;
    bool destroying_ = false;
    bool nameInUse_ = false;  // the core's index of names counts this one
    bool isPrepared_ = false; // prepareRecording() without finishRecording() so far
    VirtualControls virtualControls_;
};

} // namespace MVR
