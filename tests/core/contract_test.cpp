// What separately built libraries rely on: the places of the virtual operations.

#include "core/adaptor_interface.h"
#include "core/core_interface.h"
#include "core/util/dynamic_object.h"
#include "plugins/c_camera_plugin.h"
#include "plugins/c_interface.h"
#include "plugins/c_mesh.h"
#include "support/vtable_slot.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using namespace MVR;
using MVR::Testing::slotOf;
using Host = AdaptorInterface;

// The slots stand one after the other from `first` on.
void expectInARow(const std::vector<std::ptrdiff_t>& slots, std::ptrdiff_t first) {
    for (std::size_t index = 0; index < slots.size(); ++index)
        EXPECT_EQ(slots[index], first + static_cast<std::ptrdiff_t>(index)) << index;
}

template <class T>
Util::MessageNode* (CoreInterface::*addPropertyOf())(std::int32_t, T) {
    return &CoreInterface::addProperty;
}

TEST(ContractTest, TheCoresOperationsFollowThoseOfItsNode) {
    expectInARow({slotOf(&CoreInterface::getConfiguration),
                  slotOf(&CoreInterface::getDetachedConfiguration),
                  slotOf(&CoreInterface::loadConfiguration),
                  slotOf(&CoreInterface::deleteAllInstances),
                  slotOf(&CoreInterface::openMainDialog),
                  slotOf(&CoreInterface::closeMainDialog),
                  slotOf(&CoreInterface::isMainDialogOpen),
                  slotOf(&CoreInterface::update),
                  slotOf(&CoreInterface::isRecording),
                  slotOf(&CoreInterface::setUnlockedKeys),
                  slotOf(&CoreInterface::startRecording),
                  slotOf(&CoreInterface::stopRecording),
                  slotOf(&CoreInterface::getSlowMotion),
                  slotOf(&CoreInterface::setSlowMotion),
                  slotOf(&CoreInterface::resimulate),
                  slotOf(&CoreInterface::setInstanceChecked),
                  slotOf(&CoreInterface::setInstanceConfigProfile),
                  slotOf(addPropertyOf<double>()),
                  slotOf(addPropertyOf<std::string>()),
                  slotOf(addPropertyOf<std::int32_t>()),
                  slotOf(addPropertyOf<bool>()),
                  slotOf(&CoreInterface::getProperty),
                  slotOf(&CoreInterface::setProperty),
                  slotOf(&CoreInterface::loadModel),
                  slotOf(&CoreInterface::saveModel),
                  slotOf(&CoreInterface::getCatalogue)},
                 15); // 13 operations of the node, then its destructor's two
}

TEST(ContractTest, TheAdaptorsOperationsStandInTheirPlaces) {
    using Name = std::string;
    using Value = std::intptr_t;
    using Four = SceneNode* (Host::*)(CInterface*, Name, Value, Value);
    using Five = SceneNode* (Host::*)(CInterface*, Name, Value, Value, Value);
    using Two = SceneNode* (Host::*)(CInterface*, Name);
    expectInARow({slotOf(&Host::getVersion),
                  slotOf(&Host::setErrorCode),
                  slotOf(&Host::releaseErrorCode),
                  slotOf(&Host::setLog),
                  slotOf(&Host::releaseLog),
                  slotOf(&Host::reserved1),
                  slotOf(&Host::getName),
                  slotOf(&Host::reserved2),
                  slotOf(&Host::reserved3),
                  slotOf(&Host::getHostWindow),
                  slotOf<Four>(&Host::createNode),
                  slotOf<Five>(&Host::createNode),
                  slotOf(&Host::reserved4),
                  slotOf<Two>(&Host::createNode),
                  slotOf(&Host::getNodes),
                  slotOf(&Host::resolveNodes),
                  slotOf(&Host::mergeFile),
                  slotOf(&Host::beginUndo),
                  slotOf(&Host::addUndo),
                  slotOf(&Host::endUndo),
                  slotOf(&Host::cancelUndo),
                  slotOf(&Host::isUndoOpen),
                  slotOf(&Host::undo),
                  slotOf(&Host::getTime),
                  slotOf(&Host::setTime),
                  slotOf(&Host::getRange),
                  slotOf(&Host::setRange),
                  slotOf(&Host::getFrameRate),
                  slotOf(&Host::getFrameStep),
                  slotOf(&Host::redraw),
                  slotOf(&Host::beginKeyboardCapture),
                  slotOf(&Host::endKeyboardCapture),
                  slotOf(&Host::recordingStarted),
                  slotOf(&Host::reserved5),
                  slotOf(&Host::recordingFinished),
                  slotOf(&Host::detachNotify),
                  slotOf(&Host::getSettingsLayout)},
                 0);
}

// over 60 lines because it is a table
TEST(ContractTest, TheOperationsOfToolsAndSceneStandInTheirPlaces) {
    using Kind = CCameraPlugin;
    using Door = CInterface;
    using Name = std::string;
    using Value = std::intptr_t;
    const struct {
        const char* name;
        std::ptrdiff_t first;
        std::vector<std::ptrdiff_t> slots;
    } cases[] = {
        {"tool",
         0,
         {slotOf(&CExtendable::extend), slotOf(&CExtendable::getExtensions),
          slotOf(&CExtendable::supportsExtension), slotOf(&CCamera::startRecording),
          slotOf(&CCamera::finishRecording), slotOf(&CCamera::record), slotOf(&CCamera::setTime),
          slotOf(&CCamera::init), slotOf(&CCamera::create), slotOf(&CCamera::load),
          slotOf(&CCamera::save), slotOf(&CCamera::destroy)}},
        {"kind of tool",
         3,
         {slotOf(&Kind::create), slotOf(&Kind::getName), slotOf(&Kind::getKey),
          slotOf(&Kind::getDescription), slotOf(&Kind::getCategory), slotOf(&Kind::getAbout),
          slotOf(&Kind::getAuthor), slotOf(&Kind::getVersion), slotOf(&Kind::destroy)}},
        {"a tool's way to the core",
         3,
         {slotOf(&Door::addUndo),
          slotOf(&Door::addProperty),
          slotOf(&Door::findProperty),
          slotOf(&Door::beginPanel),
          slotOf(&Door::endPanel),
          slotOf(&Door::beginGroup),
          slotOf(&Door::endGroup),
          slotOf(&Door::addSpinnerInt),
          slotOf(&Door::addSpinner),
          slotOf(&Door::addCheck),
          slotOf(&Door::addText),
          slotOf(&Door::addCombo),
          slotOf(&Door::addButton),
          slotOf(&Door::openConfiguration),
          slotOf(&Door::updatePanel),
          slotOf(&Door::openInputDialog),
          slotOf(&Door::getDataPath),
          slotOf(&Door::setSaveData),
          slotOf(&Door::getSaveData),
          slotOf(&Door::clearSaveData),
          slotOf(&Door::destroyNode),
          slotOf<SceneNode* (Door::*)(Name)>(&Door::createNode),
          slotOf<SceneNode* (Door::*)(Name, Value, Value)>(&Door::createNode),
          slotOf<SceneNode* (Door::*)(Name, Value, Value, Value)>(&Door::createNode),
          slotOf<void (Door::*)(Name, CMesh)>(&Door::createNode),
          slotOf(&Door::getSnapshot),
          slotOf(&Door::getHelperSnapshot),
          slotOf(&Door::getMeshSnapshot),
          slotOf(&Door::getLensSnapshot),
          slotOf(&Door::nodeQuery1),
          slotOf(&Door::nodeQuery2),
          slotOf(&Door::nodeQuery3),
          slotOf(&Door::nodeQuery4),
          slotOf(&Door::nodeQuery5),
          slotOf(&Door::getTime),
          slotOf(&Door::getFrameRate),
          slotOf(&Door::getFrameStep),
          slotOf(&Door::redraw),
          slotOf(&Door::messageBox)}},
        {"what a tool hears of its panel", 0, {slotOf(&Door::Callback::changed)}},
        {"choices of its panel", 0, {slotOf(&Door::ComboUpdater::update)}},
        {"node",
         0,
         {slotOf(&SceneNode::extend),
          slotOf(&SceneNode::show),
          slotOf(&SceneNode::hide),
          slotOf(&SceneNode::isVisible),
          slotOf(&SceneNode::select),
          slotOf(&SceneNode::getParent),
          slotOf(&SceneNode::getChildCount),
          slotOf(&SceneNode::getChild),
          slotOf(&SceneNode::release),
          slotOf(&SceneNode::bindTest),
          slotOf(&SceneNode::getTransformAccess),
          slotOf(&SceneNode::getVisibilityController),
          slotOf(&SceneNode::setVisibilityController),
          slotOf(&SceneNode::releaseTransformAccess),
          slotOf(&SceneNode::isSameNode),
          slotOf(&SceneNode::setParent),
          slotOf(&SceneNode::setName),
          slotOf(&SceneNode::getHostName),
          slotOf(&SceneNode::destroy),
          slotOf(&SceneNode::duplicate),
          slotOf(&SceneNode::getSnapshot),
          slotOf(&SceneNode::getHelperSnapshot),
          slotOf(&SceneNode::getMeshSnapshot),
          slotOf(&SceneNode::getLensSnapshot),
          slotOf(&SceneNode::startRecording),
          slotOf(&SceneNode::firstExtension),
          slotOf(&SceneNode::secondExtension)}},
        {"a node's meshes",
         0,
         {slotOf(&NodeMeshHandler::query), slotOf(&NodeMeshHandler::endMeshSnapshot),
          slotOf(&NodeMeshHandler::endHelperSnapshot)}},
        {"a node's transform", 0, {slotOf(&NodeTransformHandler::endSnapshot)}},
        {"a node's queries", 0, {slotOf(&NodeQueryHandler::query)}},
        {"transform",
         0,
         {slotOf(&TransformAccess::get), slotOf(&TransformAccess::set),
          slotOf(&TransformSnapshot::getGlobal), slotOf(&TransformSnapshot::setGlobal),
          slotOf(&TransformSnapshot::getPosition), slotOf(&TransformSnapshot::setPosition),
          slotOf(&TransformSnapshot::getRotation), slotOf(&TransformSnapshot::setRotation)}},
        {"mesh", 0, {slotOf(&MeshSnapshot::get)}},
        {"helper", 0, {slotOf(&HelperSnapshot::set)}},
        {"undo", 0, {slotOf(&CUndo::restore), slotOf(&CUndo::redo), slotOf(&CUndo::destroy)}},
        {"what frees itself", 0, {slotOf(&Util::DynamicObject::destroy)}},
    };
    for (const auto& contract : cases) {
        SCOPED_TRACE(contract.name);
        expectInARow(contract.slots, contract.first);
    }
}

} // namespace
