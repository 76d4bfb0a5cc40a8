#include "stage/takes/progress.h"

#include "stage/base/machine.h"
#include "stage/takes/take.h"

#include <cmath>
#include <cstdio>

namespace Stage {

Progress::Progress(double start) : start_(start), isOn_(isTerminal(1)) {}

Progress::~Progress() {
    if (isShown_)
        std::printf("\n");
}

void Progress::show(double time, const TakeFigures& figures) {
    if (!isOn_)
        return;
    isShown_ = true;
    if (time < start_) {
        std::printf("\r\x1b[KRecording in %.0f", std::ceil(start_ - time));
    } else {
        std::printf("\r\x1b[KRecording  %.2f s  %lld frames  %lld late", time,
                    static_cast<long long>(figures.frames),
                    static_cast<long long>(figures.lateEvents));
    }
    std::fflush(stdout);
}

} // namespace Stage
