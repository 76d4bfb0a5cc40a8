#pragma once

#include <cstddef>
#include <cstdint>

/// The native dialogs by resource number. Each back end builds the same controls from them.
namespace MVR::Platform {

enum class ControlKind { Label, Button, ProgressBar };

constexpr std::int32_t kNoControl = -1; ///< the id of a control that nobody looks up

/// Position and size in pixels, from the dialog's upper left.
struct ControlTemplate {
    std::int32_t id;
    ControlKind kind;
    const char* text;
    std::int32_t x, y, width, height;
};

constexpr std::size_t kMostControls = 8;

struct DialogTemplate {
    std::int32_t resource;
    const char* title;
    std::int32_t width, height;
    std::size_t controlCount;
    ControlTemplate controls[kMostControls];
};

/// The dialog that shows the progress of a resimulation.
namespace ResimulationResource {
constexpr std::int32_t kDialog = 140;
constexpr std::int32_t kProgressBar = 1070;
constexpr std::int32_t kStopButton = 1075;
} // namespace ResimulationResource

constexpr DialogTemplate kDialogTemplates[] = {
    {ResimulationResource::kDialog,
     "Mirvane",
     300,
     104,
     3,
     {{kNoControl, ControlKind::Label, "Simulating. Please wait...", 12, 10, 276, 18},
      {ResimulationResource::kProgressBar, ControlKind::ProgressBar, "", 12, 34, 276, 20},
      {ResimulationResource::kStopButton, ControlKind::Button, "Stop", 106, 66, 88, 26}}},
};

} // namespace MVR::Platform
