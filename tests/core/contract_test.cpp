// What separately built libraries rely on: the places of the virtual operations.

#include "core/adaptor_interface.h"
#include "core/core_interface.h"
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
                  slotOf(&CoreInterface::setProperty)},
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

} // namespace
