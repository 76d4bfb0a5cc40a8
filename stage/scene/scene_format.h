/// \file
/// The words of a scene's file that its writer and its reader share.
#pragma once

#include "core/contract/adaptor_interface.h"

#include <cstdint>

namespace Stage::SceneFormat {

constexpr const char* kRoot = "MirvaneScene";
constexpr const char* kVersion = "1";
/// Of a camera; missing in files of before it could be set.
constexpr const char* kLens = "lens";

struct Kind {
    const char* word;
    std::intptr_t kind;
};
/// Kinds of node; another one is written as its number.
constexpr Kind kKinds[] = {
    {"helper", MVR::kNodeHelper}, {"camera", MVR::kNodeCamera}, {"light", MVR::kNodeLight}};

} // namespace Stage::SceneFormat
