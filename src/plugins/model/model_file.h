/// \file
/// Files that hold a model, "*.prm": a compressed block of a tree's text, or the plain text.
#pragma once

#include "data/sdk/tag.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace MVR {

/// The most bytes of a model's file: a mesh of some millions of vertices.
constexpr std::uint64_t kMostModelBytes = std::uint64_t(256) << 20;
/// The most bytes of its text when it is decompressed; a tree takes up to 14 times as many.
constexpr std::size_t kMostModelTextBytes = std::size_t(256) << 20;

/// The folder of a file as a full path, without a separator at its end.
std::string folderOfFile(const std::string& path);

/// The attribute of a model's outermost element that names the folder of its file.
constexpr const char* kModelFolder = "path";

/// Reads a model and sets its attribute "path" to the file's folder, in place of any that it has.
/// False, with the reason and for text its line and column in the log, if it can't be read; `out`
/// is then what came before the fault.
[[nodiscard]] bool readModelFile(const std::string& path, Tag& out);

/// Replaces a file by the model. False, with the reason in the log and the old file whole, if it
/// can't be written, or couldn't be read again.
[[nodiscard]] bool writeModelFile(const std::string& path, const Tag& model);

} // namespace MVR
