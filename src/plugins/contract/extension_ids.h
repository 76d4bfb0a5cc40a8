#pragma once

#include <cstdint>

namespace MVR {

/// Ids that the core passes to CExtendable::extend() of a descriptor, whenever it looks for a kind
/// of tool or lists the kinds.
namespace DescriptorExtension {
/// `data`: std::vector<std::string>* to fill with old type names of the tool, which saved data may
/// still use. Sent whether it is supported or not.
constexpr std::int32_t kOldNames = 16;
/// Never sent, only looked up with supportsExtension(): the tool is internal, and the user isn't
/// offered it.
constexpr std::int32_t kInternal = 51;
} // namespace DescriptorExtension

/// Ids that the core passes to CExtendable::extend() of a tool object. An id whose comment names no
/// moment may be sent at any time after create() or load(), also during takes.
namespace ToolExtension {
/// `data`: the virtual control that needs its value. Sent whether it is supported or not, at each
/// poll of the devices once the tool has asked for such a control: during takes before record(),
/// and outside of them for live displays.
constexpr std::int32_t kVirtualControl = 40;
/// All tools of one creation exist and are linked; `data` is 0. Sent once, after create() or
/// load().
constexpr std::int32_t kAfterCreate = 42;
/// `data`: Tag*, an element "customdata" for the tool to fill with what it wants saved, in scenes
/// and in models. One that stays without attributes and children isn't saved. Only an element of
/// that name comes back by kSetCustomData: the log tells if the tool puts another one in its place,
/// which is dropped if the format can't hold it. Sent whether it is supported or not, whenever one
/// of them is written.
constexpr std::int32_t kGetCustomData = 44;
/// `data`: the Tag* that was saved, empty if nothing was. Sent whether it is supported or not,
/// once, as the first call, before kDataFolder and init().
constexpr std::int32_t kSetCustomData = 45;
/// `data`: std::string* to fill with the tool's own data folder; sent from init() on, whenever
/// CInterface::getDataPath() is called.
constexpr std::int32_t kDataPath = 48;
/// The user asks for the object behind the tool to be selected; `data` is 0.
constexpr std::int32_t kSelectObject = 49;
/// `data`: std::string*, the folder that the tool's data comes from; sent once, right before
/// init().
constexpr std::int32_t kDataFolder = 52;
/// The result is the tool's own list of presets, a ConfigProfileManager* and an
/// InputProfileManager*, instead of its kind's; the tool keeps it as long as it lives. `data` is 0.
constexpr std::int32_t kConfigProfiles = 53;
constexpr std::int32_t kInputProfiles = 54;
} // namespace ToolExtension

/// Ids that the core passes to extend() of a scene node, as the last step of making a model that
/// names objects to select; `data` is 0.
namespace NodeCommand {
/// A selection of several nodes begins with the node whose select() comes next.
constexpr std::int32_t kOpenSelection = 10;
/// The node whose select() came last was the last of the selection.
constexpr std::int32_t kCloseSelection = 11;
} // namespace NodeCommand

/// Ids that a tool passes to extend() of its CInterface; its comment says what they do and when.
namespace InterfaceExtension {
constexpr std::int32_t kNodeAtTime = 38;
constexpr std::int32_t kNodeData = 39;
constexpr std::int32_t kAddVirtualControl = 41;
constexpr std::int32_t kUnplug = 43;
constexpr std::int32_t kParentName = 55;
constexpr std::int32_t kMasterNodes = 56;
constexpr std::int32_t kIdentity = 57;
} // namespace InterfaceExtension

} // namespace MVR
