#pragma once

#include <cstdint>

namespace Stage {

struct TakeFigures;

/// One line of the terminal that shows the progress of a take; silent if the output isn't a
/// terminal.
class Progress {
public:
    /// `start`: scene time at which the take begins.
    explicit Progress(double start);
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    /// Leaves the last state of the line on the terminal.
    ~Progress();

    void show(double time, const TakeFigures& figures);

private:
    double start_;
    bool isOn_;
    bool isShown_ = false;
};

} // namespace Stage
