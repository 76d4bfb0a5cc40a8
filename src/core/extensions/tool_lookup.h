// The tool that a name of the contract means.
#pragma once

#include <cstdint>
#include <string>

namespace MVR {

class CoreServices;
class InstanceReference;

/// Returns the tool of that name, never the root; null, with `code` that of "MODEL_NOTOOL" or, if
/// the attachment ends, of "CORE_DETACHING".
[[nodiscard]] InstanceReference* findTool(CoreServices& services, const std::string& name,
                                          std::int32_t& code);
/// The same, but "" means the root.
[[nodiscard]] InstanceReference* findParent(CoreServices& services, const std::string& name,
                                            std::int32_t& code);

/// Returns the code of "ALREADYRECORDING" during a take or a resimulation, otherwise 0.
[[nodiscard]] std::int32_t refuseDuringTake(CoreServices& services);

} // namespace MVR
