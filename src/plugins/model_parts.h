#pragma once

#include <memory>
#include <typeindex>
#include <utility>
#include <vector>

namespace MVR {

/// What a reference remembers of the data that its tool was made from. Each unit that remembers
/// something names a type of its own, so that a new one needs no line here. Most tools have nothing
/// to remember: a part is made when something is written to it.
class ModelParts {
public:
    /// Returns the only `Part`, made at the first call. It stays where it is as long as this lives.
    template <class Part>
    [[nodiscard]] Part& get() {
        if (Part* const part = find<Part>())
            return *part;
        const auto part = std::make_shared<Part>();
        parts_.emplace_back(typeid(Part), part);
        return *part;
    }
    /// Returns the `Part`, or null if it wasn't made.
    template <class Part>
    [[nodiscard]] Part* find() const {
        const std::type_index type = typeid(Part);
        for (const auto& [known, part] : parts_)
            if (known == type)
                return static_cast<Part*>(part.get());
        return nullptr;
    }
    /// Returns the `Part`, or an empty one if it wasn't made.
    template <class Part>
    [[nodiscard]] const Part& read() const {
        static const Part empty{};
        const Part* const part = find<Part>();
        return part != nullptr ? *part : empty;
    }

private:
    std::vector<std::pair<std::type_index, std::shared_ptr<void>>> parts_; // each of its type
};

} // namespace MVR
