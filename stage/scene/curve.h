#pragma once

#include <vector>

namespace Stage {

/// Keys closer in time than this are one key. It is far below a frame and far above the rounding of
/// times that were added up over hours.
inline constexpr double kSameTimeSeconds = 1e-6;

struct Key {
    double time; ///< seconds of scene time
    double value;

    bool operator==(const Key& other) const = default;
};

/// One animated number: keys in order of time, straight lines between them.
class Curve {
public:
    /// The keys around a time: `from` and `to` are the same key before the first and after the
    /// last. Only for a curve that has keys.
    struct Span {
        const Key* from;
        const Key* to;
        double fraction; ///< 0 at `from`, 1 at `to`
    };

    /// Sets the key at `time`, and replaces one that is there. Constant time at the end of the
    /// curve, where a take writes.
    void setKey(double time, double value);

    /// Removes the keys from `time` on. Earlier keys stay as they are.
    void eraseFrom(double time);

    /// Returns the value at `time`, or `valueAtRest` if there are no keys. Constant before the
    /// first key and after the last.
    [[nodiscard]] double evaluate(double time, double valueAtRest) const;

    [[nodiscard]] Span spanAt(double time) const;

    [[nodiscard]] const std::vector<Key>& getKeys() const { return keys_; }
    [[nodiscard]] bool isEmpty() const { return keys_.empty(); }

    bool operator==(const Curve& other) const = default;

private:
    std::vector<Key> keys_;
};

} // namespace Stage
