// Files that hold a model, "*.prm": a compressed block of a tree's text, or the plain text.
#pragma once

#include "data/sdk/tag.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace MVR {

class FaultList;

/// The most bytes of a model's file: a mesh of some millions of vertices.
constexpr std::uint64_t kMostModelBytes = std::uint64_t(256) << 20;
/// The most bytes of its text when it is decompressed; a tree needs up to 14 times as many.
constexpr std::size_t kMostModelTextBytes = std::size_t(256) << 20;

/// Returns the folder of a file as a full path, without a separator at its end.
std::string folderOfFile(const std::string& path);

/// The attribute of a model's outermost element that names the folder of its file.
constexpr const char* kModelFolder = "path";

/// Reads a model and sets its attribute "path" to the file's folder, replacing any that it has.
/// Returns false if it can't be read; the log then has the reason, with line and column for text,
/// and `out` has what came before the fault. `faults` gets the reason too, unless it is null.
[[nodiscard]] bool readModelFile(const std::string& path, Tag& out, FaultList* faults);

/// Replaces a file by the model. Returns false if it can't be written, or couldn't be read again;
/// the log, and `faults` unless it is null, then has the reason, and the old file stays whole.
[[nodiscard]] bool writeModelFile(const std::string& path, const Tag& model, FaultList* faults);

} // namespace MVR
