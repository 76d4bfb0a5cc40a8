#include "plugins/model/elements/table.h"

#include "core/base/border.h"
#include "plugins/instance_reference.h"
#include "plugins/model/elements/catalogue_words.h"
#include "plugins/model/elements/config_profile.h"
#include "plugins/model/elements/custom_data.h"
#include "plugins/model/elements/high_poly.h"
#include "plugins/model/elements/high_poly_names.h"
#include "plugins/model/elements/input_profile.h"
#include "plugins/model/elements/node_info.h"
#include "plugins/model/elements/node_list.h"
#include "plugins/model/elements/node_mesh.h"
#include "plugins/model/elements/node_parent.h"
#include "plugins/model/elements/node_selection.h"
#include "plugins/model/elements/node_transform.h"
#include "plugins/model/elements/node_visible.h"
#include "plugins/model/elements/recorded_values.h"
#include "plugins/model/elements/saved_block.h"
#include "plugins/model/elements/tool_name.h"
#include "plugins/model/elements/tool_type.h"
#include "plugins/model/elements/tree_states.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace MVR {
namespace {

constexpr std::uint32_t kAlways = 0xFFFFFFFF;
constexpr std::uint32_t kNever = 0; // only read

template <class Unit>
constexpr ToolElement tool(std::uint32_t bits, Moment moment, std::int32_t turn = 0) {
    return {Unit::kWord, bits, moment, turn, &Unit::save, &Unit::load};
}

template <class Unit>
constexpr NodeElement node(std::uint32_t bits, Moment moment, std::int32_t turn = 0) {
    return {Unit::kWord, bits, moment, turn, &Unit::save, &Unit::load};
}

// Read by the code that makes the tool.
template <class Unit>
constexpr ToolElement written(std::uint32_t bits) {
    return {Unit::kWord, bits, Moment::Making, 0, &Unit::save, nullptr};
}

constexpr ToolElement onlyRead(const char* word) {
    return {word, kNever, Moment::Making, 0, nullptr, nullptr};
}

// Each table in the order of writing: the element, its bits, and when it is read.

constexpr std::array kInTool{
    written<TypeElement>(kAlways),
    onlyRead(TypeElement::kOldWord),
    onlyRead(CatalogueWord::kFolder),
    written<NameElement>(kAlways),
    tool<ShownElement>(kAlways, Moment::BeforeInit),
    tool<ExpandedElement>(kAlways, Moment::BeforeInit),
    tool<CheckedElement>(kAlways, Moment::BeforeInit),
    tool<CustomDataElement>(SaveMask::kCustomData, Moment::BeforeInit),
    tool<HighPoly>(SaveMask::kHighPoly, Moment::Started),
    tool<ConfigProfileElement>(SaveMask::kConfigProfile, Moment::Attributes, 2),
    tool<InputProfileElement>(SaveMask::kInputProfile, Moment::Attributes, 3),
    tool<NodeInfoElement>(SaveMask::kAnyNodeInfo, Moment::EachPass, 4),
    tool<SavedBlockElement>(SaveMask::kSavedBlock, Moment::Resuming),
    tool<RecordedValuesElement>(SaveMask::kRecordedValues, Moment::Attributes, 1),
};

constexpr std::array kInNodeInfo{
    tool<NodeListElement>(kAlways, Moment::EachPass, 2),
    tool<NodeSelection>(SaveMask::kSelection, Moment::Selection, 1),
};

constexpr std::array kInNode{
    node<NodeTransformElement>(SaveMask::kTransform, Moment::Attributes, 2),
    node<NodeParentElement>(SaveMask::kParent, Moment::Parents, 3),
    node<NodeVisibleElement>(SaveMask::kVisible, Moment::Attributes, 1),
    node<NodeMeshElement>(SaveMask::kMesh, Moment::Attributes, 5),
    node<HighPolyNames>(SaveMask::kHighPoly, Moment::HighPolyNames, 4),
};

/// The rows in the order of reading; those of one turn in the order of the table.
template <class Row, std::size_t kCount>
constexpr std::array<Row, kCount> byTurn(std::array<Row, kCount> rows) {
    for (std::size_t i = 1; i < kCount; ++i)
        for (std::size_t j = i; j > 0 && rows[j].turn < rows[j - 1].turn; --j)
            std::swap(rows[j], rows[j - 1]);
    return rows;
}

constexpr auto kToolReading = byTurn(kInTool);
constexpr auto kNodeInfoReading = byTurn(kInNodeInfo);
constexpr auto kNodeReading = byTurn(kInNode);

constexpr bool isWritten(std::uint32_t bits, std::uint32_t mask) {
    return bits == kAlways || (bits & mask) != 0;
}

template <class Rows>
std::uint32_t bitsIn(const Rows& rows, Moment moment) {
    std::uint32_t bits = 0;
    for (const auto& row : rows)
        if (row.moment == moment)
            bits |= row.bits;
    return bits;
}

template <class Rows>
bool isIn(const Rows& rows, std::string_view word) {
    return std::any_of(
        rows.begin(), rows.end(), [word](const auto& row) { return word == row.word; });
}

constexpr bool isOfPass(Moment moment) {
    return moment >= Moment::EachPass;
}

template <class Rows>
bool saveRows(const Rows& rows, const ToolSaving& tool, Tag& out) {
    const InstanceReference::Watch alive(&tool.reference);
    for (const ToolElement& row : rows) {
        if (row.save != nullptr && isWritten(row.bits, tool.mask))
            row.save(tool, out);
        if (alive.get() == nullptr)
            return false;
    }
    return true;
}

template <class Rows, class IsDue>
void loadRows(const Rows& rows, ToolLoading& tool, const Tag& data, IsDue isDue) {
    const InstanceReference::Watch alive(&tool.reference);
    for (const ToolElement& row : rows) {
        if (row.load == nullptr || !isDue(row))
            continue;
        row.load(tool, data);
        if (alive.get() == nullptr || tool.isBranchDone)
            return;
    }
}

} // namespace

bool saveElements(const ToolSaving& tool, Tag& out) {
    return saveRows(kInTool, tool, out);
}

void loadElements(Moment moment, ToolLoading& tool, const Tag& data) {
    loadRows(
        kToolReading, tool, data,
        [moment](const ToolElement& row) { return row.moment == moment; });
}

void loadStages(ToolLoading& tool, const Tag& data) {
    loadRows(
        kToolReading, tool, data,
        [&tool](const ToolElement& row) {
            return isOfPass(row.moment) && (row.bits & tool.stages) != 0;
        });
}

void saveNodeInfo(const ToolSaving& tool, Tag& out) {
    (void)saveRows(kInNodeInfo, tool, out);
}

void loadNodeInfo(ToolLoading& tool, const Tag& nodeInfo) {
    loadRows(
        kNodeInfoReading, tool, nodeInfo,
        [&tool](const ToolElement& row) { return (row.bits & tool.stages) != 0; });
}

void saveNode(const NodeSaving& node, Tag& out) {
    for (const NodeElement& row : kInNode)
        if (isWritten(row.bits, node.tool.mask))
            (void)Border::callNode(
                row.word, [&] { row.save(node, out); });
}

void loadNode(NodeLoading& node, const Tag& data) {
    for (const NodeElement& row : kNodeReading)
        if ((row.bits & node.tool.stages) != 0)
            (void)Border::callNode(
                row.word, [&] { row.load(node, data); });
}

bool isElementOfTool(std::string_view word) {
    return isIn(kInTool, word);
}

bool isElementOfNodeInfo(std::string_view word) {
    return isIn(kInNodeInfo, word);
}

bool isElementOfNode(std::string_view word) {
    return isIn(kInNode, word);
}

bool isWrittenOfNode(std::string_view word, std::uint32_t mask) {
    return std::all_of(
        kInNode.begin(), kInNode.end(),
        [word, mask](const NodeElement& row) {
            return word != row.word || isWritten(row.bits, mask);
        });
}

std::uint32_t bitsOf(Moment moment) {
    return bitsIn(kInTool, moment) | bitsIn(kInNodeInfo, moment) | bitsIn(kInNode, moment);
}

} // namespace MVR
