// The names that the tools of one attachment use, so that a new tool finds a free one at once.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace MVR {

/// Names in use, each as often as it is in use, and for each base name a hint at the lowest number
/// that may be free: naming the ten thousandth tool costs as much as naming the first.
class InstanceNames {
public:
    void add(const std::string& name);
    /// Ends one use of `name`, which must be in use.
    void remove(const std::string& name);
    [[nodiscard]] bool isUsed(const std::string& name) const { return uses_.count(name) != 0; }

    /// Returns `given` if it is free. Otherwise returns its base, which is `given` without a
    /// suffix of "_" and two digits, with the first free suffix of "_01", "_02" and so on. What a
    /// file can't hold is "_" in the result.
    [[nodiscard]] std::string makeUnique(const std::string& given);

private:
    // All numbers from `start` to below `lowest` are in use.
    struct Hint {
        std::int32_t start;
        std::int32_t lowest;
    };

    std::int32_t firstFree(const std::string& base, std::int32_t start);
    void lowerHints(std::string_view name);

    std::unordered_map<std::string, std::int32_t> uses_;
    std::unordered_map<std::string, std::vector<Hint>> hints_; // by base; none says nothing new
};

} // namespace MVR
