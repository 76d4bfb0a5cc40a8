#include "stage/scene/lens.h"

#include <cmath>

namespace Stage {

double toFieldOfView(double focalLengthMm) {
    return 2 * std::atan(kPictureHeightMm / 2 / focalLengthMm);
}

double toFocalLength(double fieldOfViewRadians) {
    return kPictureHeightMm / 2 / std::tan(fieldOfViewRadians / 2);
}

bool isLensNumber(double number) {
    return std::isfinite(number) && number > 0;
}

} // namespace Stage
