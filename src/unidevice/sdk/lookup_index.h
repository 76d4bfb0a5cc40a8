#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace MVR {
class Tag;
}

namespace UniDevice {

class Control;
class Device;

/// Where the devices of a list, or the controls of a device, are found by name, so that many
/// bindings are resolved in a time that grows with their number only.
///
/// For DeviceHandler and Device alone. Names may change without a word, so a find is checked, and
/// who finds nothing here looks at all entries.
class LookupIndex {
public:
    static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

    /// Returns the place of the first device of this name, or kNone.
    [[nodiscard]] std::size_t findDevice(const std::vector<Device*>& devices,
                                         const std::string& name);
    /// Returns the first of the `count` controls of `device` that `tag` names, or null.
    [[nodiscard]] Control* findControl(Device& device, std::int32_t count, const MVR::Tag& tag);

private:
    /// Returns true if the index is to be made now, for a list of `size` entries.
    [[nodiscard]] bool isDue(std::size_t size);
    [[nodiscard]] std::size_t find(const std::string& key) const;

    std::unordered_map<std::string, std::size_t> places_;
    std::size_t size_ = 0;   // of the list
    std::int32_t scans_ = 0; // looks since the list had another size
};

} // namespace UniDevice
