// The parts of a tool's data, as bits.
#pragma once

#include <cstdint>

/// What a save writes, and what a pass of applyAttributes() reads. A pass ignores other bits.
namespace MVR::SaveMask {

constexpr std::uint32_t kParent = 0x00001;         ///< per scene node: its parent
constexpr std::uint32_t kTransform = 0x00002;      ///< per scene node: its world transform
constexpr std::uint32_t kMesh = 0x00004;           ///< per scene node: its mesh
constexpr std::uint32_t kVisible = 0x00008;        ///< per scene node: whether it is visible
constexpr std::uint32_t kInputProfile = 0x00040;   ///< the bindings of the input properties
constexpr std::uint32_t kHighPoly = 0x00080;       ///< the detailed model and where its nodes are
constexpr std::uint32_t kSelection = 0x00100;      ///< the scene nodes that the model selects
constexpr std::uint32_t kNodes = 0x00200;          ///< only read: the scene nodes are made
constexpr std::uint32_t kConfigProfile = 0x00800;  ///< the values of the tool's panel
constexpr std::uint32_t kCustomData = 0x01000;     ///< what the tool itself adds
constexpr std::uint32_t kSavedBlock = 0x02000;     ///< the tool's saved block
constexpr std::uint32_t kRecordedValues = 0x08000; ///< the stored input of its takes
constexpr std::uint32_t kNoChildren = 0x10000;     ///< leaves out the tools below
constexpr std::uint32_t kPacked = 0x20000;         ///< packs the result, unless it is the root's
constexpr std::uint32_t kExact = 0x40000;          ///< numbers of bindings have all their digits

/// Any of these makes "nodeinfo" appear: all bits below that of the panel, named or not.
constexpr std::uint32_t kAnyNodeInfo = kConfigProfile - 1;
/// A copy within the scene.
constexpr std::uint32_t kClone = kParent | kTransform | kMesh | kVisible | kInputProfile |
                                 kSelection | kConfigProfile | kCustomData;
/// A model's file.
constexpr std::uint32_t kModel = kClone | kHighPoly;
/// The whole tree, for the host's scene.
constexpr std::uint32_t kScene =
    kVisible | kInputProfile | kConfigProfile | kCustomData | kSavedBlock | kRecordedValues;
/// One tool, for the host to keep beside it.
constexpr std::uint32_t kDetached = kScene | kNoChildren;
/// One tool, as it may ask of itself.
constexpr std::uint32_t kOwnRequest = kDetached | kPacked;

// Hosts and stored data know the values.
static_assert(kAnyNodeInfo == 0x007FF && kModel == 0x019CF && kClone == 0x0194F);
static_assert(kScene == 0x0B848 && kDetached == 0x1B848 && kOwnRequest == 0x3B848);

} // namespace MVR::SaveMask
