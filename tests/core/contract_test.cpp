// Separately built libraries rely on the positions of the virtual operations.

#include "core/contract/adaptor_interface.h"
#include "core/contract/core_extensions.h"
#include "core/util/sdk/dynamic_object.h"
#include "plugins/contract/c_camera_plugin.h"
#include "plugins/contract/c_interface.h"
#include "plugins/contract/c_mesh.h"
#include "support/vtable_slot.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace MVR;
using MVR::Testing::expectSlots;
using Host = AdaptorInterface;

template <class T>
Util::MessageNode* (CoreInterface::*addPropertyOf())(std::int32_t, T) {
    return &CoreInterface::addProperty;
}

TEST(ContractTest, TheCoresOperationsFollowThoseOfItsNode) {
    // 13 operations of the node, then its destructor's two.
    expectSlots(
        "core", 15, &CoreInterface::getConfiguration, &CoreInterface::getDetachedConfiguration,
        &CoreInterface::loadConfiguration, &CoreInterface::deleteAllInstances,
        &CoreInterface::openMainDialog, &CoreInterface::closeMainDialog,
        &CoreInterface::isMainDialogOpen, &CoreInterface::update, &CoreInterface::isRecording,
        &CoreInterface::setUnlockedKeys, &CoreInterface::startRecording,
        &CoreInterface::stopRecording, &CoreInterface::getSlowMotion, &CoreInterface::setSlowMotion,
        &CoreInterface::resimulate, &CoreInterface::setInstanceChecked,
        &CoreInterface::setInstanceConfigProfile, addPropertyOf<double>(),
        addPropertyOf<std::string>(), addPropertyOf<std::int32_t>(), addPropertyOf<bool>(),
        &CoreInterface::getProperty, &CoreInterface::setProperty, &CoreInterface::extend);
}

TEST(ContractTest, TheOperationsOfTheExtensionsHaveTheirPositions) {
    expectSlots("models", 0, &CoreModels::getVersion, &CoreModels::load, &CoreModels::save,
                &CoreModels::getCatalogue);
    expectSlots("tools", 0, &CoreTools::getVersion, &CoreTools::list, &CoreTools::find,
                &CoreTools::create, &CoreTools::rename, &CoreTools::remove, &CoreTools::select,
                &CoreTools::getSelected, &CoreTools::getBindings, &CoreTools::setBindings,
                &CoreTools::getExactConfiguration, &CoreTools::listInputs, &CoreTools::setMapping,
                &CoreTools::getRecordedSpan);
    expectSlots("inputs", 0, &CoreInputs::getVersion, &CoreInputs::list, &CoreInputs::setListening,
                &CoreInputs::update, &CoreInputs::listDrivers);
    expectSlots("faults", 0, &CoreFaults::getVersion, &CoreFaults::list, &CoreFaults::tell);
    expectSlots("takes", 0, &CoreTakes::getVersion, &CoreTakes::getDelay, &CoreTakes::end,
                &CoreTakes::list);
}

TEST(ContractTest, TheOperationsOfTheAdaptorHaveTheirPositions) {
    using Name = std::string;
    using Value = std::intptr_t;
    using Four = SceneNode* (Host::*)(CInterface*, Name, Value, Value);
    using Five = SceneNode* (Host::*)(CInterface*, Name, Value, Value, Value);
    using Two = SceneNode* (Host::*)(CInterface*, Name);
    expectSlots("host", 0, &Host::getVersion, &Host::setErrorCode, &Host::releaseErrorCode,
                &Host::setLog, &Host::releaseLog, &Host::reserved1, &Host::getName,
                &Host::reserved2, &Host::reserved3, &Host::getHostWindow, Four(&Host::createNode),
                Five(&Host::createNode), &Host::reserved4, Two(&Host::createNode), &Host::getNodes,
                &Host::resolveNodes, &Host::mergeFile, &Host::beginUndo, &Host::addUndo,
                &Host::endUndo, &Host::cancelUndo, &Host::isUndoOpen, &Host::undo, &Host::getTime,
                &Host::setTime, &Host::getRange, &Host::setRange, &Host::getFrameRate,
                &Host::getFrameStep, &Host::redraw, &Host::beginKeyboardCapture,
                &Host::endKeyboardCapture, &Host::recordingStarted, &Host::reserved5,
                &Host::recordingFinished, &Host::detachNotify, &Host::getSettingsLayout);
}

TEST(ContractTest, TheOperationsOfToolsAndSceneHaveTheirPositions) {
    using Kind = CCameraPlugin;
    using Door = CInterface;
    using Name = std::string;
    using Value = std::intptr_t;
    using ByName = SceneNode* (Door::*)(Name);
    using Three = SceneNode* (Door::*)(Name, Value, Value);
    using Four = SceneNode* (Door::*)(Name, Value, Value, Value);
    using WithMesh = void (Door::*)(Name, CMesh);
    expectSlots("tool", 0, &CExtendable::extend, &CExtendable::getExtensions,
                &CExtendable::supportsExtension, &CCamera::startRecording,
                &CCamera::finishRecording, &CCamera::record, &CCamera::setTime, &CCamera::init,
                &CCamera::create, &CCamera::load, &CCamera::save, &CCamera::destroy);
    expectSlots("kind of tool", 3, &Kind::create, &Kind::getName, &Kind::getKey,
                &Kind::getDescription, &Kind::getCategory, &Kind::getAbout, &Kind::getAuthor,
                &Kind::getVersion, &Kind::destroy);
    expectSlots(
        "a tool's way to the core", 3, &Door::addUndo, &Door::addProperty, &Door::findProperty,
        &Door::beginPanel, &Door::endPanel, &Door::beginGroup, &Door::endGroup,
        &Door::addSpinnerInt, &Door::addSpinner, &Door::addCheck, &Door::addText, &Door::addCombo,
        &Door::addButton, &Door::openConfiguration, &Door::updatePanel, &Door::openInputDialog,
        &Door::getDataPath, &Door::setSaveData, &Door::getSaveData, &Door::clearSaveData,
        &Door::destroyNode, ByName(&Door::createNode), Three(&Door::createNode),
        Four(&Door::createNode), WithMesh(&Door::createNode), &Door::getSnapshot,
        &Door::getHelperSnapshot, &Door::getMeshSnapshot, &Door::getLensSnapshot, &Door::nodeQuery1,
        &Door::nodeQuery2, &Door::nodeQuery3, &Door::nodeQuery4, &Door::nodeQuery5, &Door::getTime,
        &Door::getFrameRate, &Door::getFrameStep, &Door::redraw, &Door::messageBox);
    expectSlots("what a tool hears of its panel", 0, &Door::Callback::changed);
    expectSlots("choices of its panel", 0, &Door::ComboUpdater::update);
    expectSlots(
        "node", 0, &SceneNode::extend, &SceneNode::show, &SceneNode::hide, &SceneNode::isVisible,
        &SceneNode::select, &SceneNode::getParent, &SceneNode::getChildCount, &SceneNode::getChild,
        &SceneNode::release, &SceneNode::bindTest, &SceneNode::getTransformAccess,
        &SceneNode::getVisibilityController, &SceneNode::setVisibilityController,
        &SceneNode::releaseTransformAccess, &SceneNode::isSameNode, &SceneNode::setParent,
        &SceneNode::setName, &SceneNode::getHostName, &SceneNode::destroy, &SceneNode::duplicate,
        &SceneNode::getSnapshot, &SceneNode::getHelperSnapshot, &SceneNode::getMeshSnapshot,
        &SceneNode::getLensSnapshot, &SceneNode::startRecording, &SceneNode::firstExtension,
        &SceneNode::secondExtension);
    expectSlots("a node's meshes", 0, &NodeMeshHandler::query, &NodeMeshHandler::endMeshSnapshot,
                &NodeMeshHandler::endHelperSnapshot);
    expectSlots("a node's transform", 0, &NodeTransformHandler::endSnapshot);
    expectSlots("a node's queries", 0, &NodeQueryHandler::query);
    expectSlots("transform", 0, &TransformAccess::get, &TransformAccess::set,
                &TransformSnapshot::getGlobal, &TransformSnapshot::setGlobal,
                &TransformSnapshot::getPosition, &TransformSnapshot::setPosition,
                &TransformSnapshot::getRotation, &TransformSnapshot::setRotation);
    expectSlots("lens", 0, &LensSnapshot::getFocalLengthMm, &LensSnapshot::setFocalLengthMm,
                &LensSnapshot::getFocusDistance, &LensSnapshot::setFocusDistance,
                &LensSnapshot::getFNumber, &LensSnapshot::setFNumber, &LensSnapshot::release);
    expectSlots("mesh", 0, &MeshSnapshot::get);
    expectSlots("helper", 0, &HelperSnapshot::set);
    expectSlots("undo", 0, &CUndo::restore, &CUndo::redo, &CUndo::destroy);
    expectSlots("what frees itself", 0, &Util::DynamicObject::destroy);
}

} // namespace
