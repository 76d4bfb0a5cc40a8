#pragma once

#include "plugins/model/elements/high_poly.h"
#include "plugins/model/elements/high_poly_names.h"
#include "plugins/model/elements/kept_values.h"
#include "plugins/model/elements/node_selection.h"
#include "plugins/model/elements/unknown_elements.h"

namespace MVR {

/// What a reference remembers of the data that its tool was made from.
struct ModelParts {
    HighPoly highPoly;
    HighPolyNames highPolyNames;
    NodeSelection selection;
    UnknownElements unknown;
    KeptValues kept;
};

} // namespace MVR
