#pragma once

#include "data/sdk/tag.h"

#include <cstdint>
#include <string>

namespace MVR {

/// Models: tools and their scene objects in files ("*.prm"), to be used again in any scene.
///
/// getModels() in core_extensions.h returns it. The core owns it. All calls come on the host's
/// thread; codes are those of ErrorCode, 0 for success. A later version adds operations at the end.
class CoreModels {
public:
    static constexpr std::int32_t kVersion = 1;

    /// Returns the version of this core's interface; kVersion or above.
    virtual std::int32_t getVersion() = 0;
    /// Creates the tools of a model's file below the tool `parent`, or under the root if that is
    /// "", as one undo step; the model becomes recent. `path` may be relative to the current
    /// folder. Allowed during a take, in which the new tools don't participate. CoreFaults lists
    /// all that went wrong. Returns 0, or the code of
    /// - "MODEL_NOTOOL": there is no tool `parent`. Nothing changed.
    /// - "MODEL_UNREADABLE": there is no file, or it is damaged. Nothing changed.
    /// - "MODEL_INVALID": the file holds something else. Nothing changed.
    /// - "MODEL_NOTHINGCREATED": none of its tools could be made. Nothing changed.
    /// - "MODEL_INCOMPLETE", a warning: some tools could not be made, the others are there.
    [[nodiscard]] virtual std::int32_t load(std::string path, std::string parent) = 0;
    /// Writes the tool of that name and all below it as a model, or all tools if the name is "". A
    /// model describes the tools and their scene objects, without recorded values. Returns 0, or
    /// the code of "MODEL_NOTOOL" for an unknown name, or of "MODEL_UNWRITABLE" if the file can't
    /// be written: an old file stays whole then, and CoreFaults says why.
    [[nodiscard]] virtual std::int32_t save(std::string toolName, std::string path) = 0;
    /// Returns what can be created: an element "Catalogue" with one element "entry" each, first the
    /// kinds of tools, then the models of the shared and the user's PRM folder. Its children hold
    /// text: "name", "version", "about", "category" (any number), for a tool "type" (for
    /// CoreTools::create()), "description" (one line), "author" and "library" (the path), for a
    /// model "file" (the path for load()) and "required" (the name of an entry that it uses, any
    /// number). An empty one is left out. After the entries comes one element "refused" for each
    /// library in the folder of tools that can't be used, with "file" (the path) and "text" (why).
    virtual Tag getCatalogue() = 0;

protected:
    ~CoreModels() = default;
};

} // namespace MVR
