#pragma once

#include <memory>
#include <typeindex>
#include <utility>
#include <vector>

namespace MVR {

/// What a reference remembers of the data that its tool was made from. Each unit that remembers
/// something names a type of its own, so that a new one needs no line here.
class ModelParts {
public:
    /// Returns the only `Part`, made at the first call. It stays where it is as long as this lives.
    template <class Part>
    [[nodiscard]] Part& get() {
        const std::type_index type = typeid(Part);
        for (const auto& [known, part] : parts_)
            if (known == type)
                return *static_cast<Part*>(part.get());
        const auto part = std::make_shared<Part>();
        parts_.emplace_back(type, part);
        return *part;
    }

private:
    std::vector<std::pair<std::type_index, std::shared_ptr<void>>> parts_; // each of its type
};

} // namespace MVR
