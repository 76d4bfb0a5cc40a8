#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace Stage {

/// How a line begins that tells why a file can't be merged, which only the host knows.
constexpr const char* kMergeFault = "Unable to merge";

/// Watches what the core's log tells from here on.
class LogLines {
public:
    LogLines();

    /// The texts of the lines since then that tell of an error or a warning, in order, each once.
    /// Where some name the model, the tool and what of it failed, only those and `kMergeFault`: the
    /// others repeat it.
    [[nodiscard]] std::vector<std::string> getFaults() const;

private:
    std::size_t begin_;
};

} // namespace Stage
