/// \file
/// Lists of named elements, such as presets, that are gathered from files.
#pragma once

#include "data/sdk/tag.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace MVR {

/// One element of a list.
struct FileElement {
    std::string name;
    Tag data;
};

/// A list of named elements from several places, which the user sees as one. What a file looks like
/// is told by a derived class. Host thread only.
///
/// 1. `addSourcePath` in reading order, `setDestinationPath`, `addReadOnlyName`.
/// 2. `reload`, then and whenever files may have changed.
/// 3. `addElement`, `removeElement` as the user asks.
///
/// What reads the list may be called at any time. The list itself calls its virtual operations,
/// from inside 2 and 3. The fields and the order of the virtual operations are shared with
/// separately built libraries.
class XMLFileManager {
public:
    /// The most files of one folder that are read, the first in byte order of their names.
    static constexpr std::size_t kMostFiles = 10000;

    static constexpr std::int32_t kDone = 0;
    static constexpr std::int32_t kRefused = 1; ///< the name is reserved

    /// Writes `element` as a file of its own in `folder`. Gives its path; empty, with a line in the
    /// log and everything as it was, if that failed.
    virtual std::string saveToFile(Tag element, std::string folder) = 0;
    /// All elements of a file. None of one that is missing, or that can't be read, which is logged.
    virtual std::vector<Tag> loadFile(std::string path) = 0;
    /// Takes what has the name of `element` out of a file. A failure is logged.
    virtual void removeFromFile(Tag element, std::string path) = 0;
    /// The name, or "" if it has none.
    [[nodiscard]] virtual std::string elementName(const Tag& element) const = 0;
    /// The wildcard of the list's files, "*" and their ending.
    [[nodiscard]] virtual std::string fileFilter() const = 0;

    virtual ~XMLFileManager() = default;

    /// A folder, or, if the fourth character from the end is ".", a single file. An element of a
    /// later source takes the place of an earlier one with its name.
    void addSourcePath(const std::string& path);
    /// The folder that new files go to. Without one nothing is written.
    void setDestinationPath(const std::string& path);
    /// No file and no user may put anything under this name, in upper or lower case, nor remove it.
    void addReadOnlyName(const std::string& name);

    /// Reads all sources anew. What was only added to the list is gone then.
    void reload();
    /// Puts an element into the list, in the place of one with its name, and with `saveFile` into a
    /// file. `force` passes over the reserved names. `kDone`, or `kRefused` with nothing changed.
    /// A failure to write is no refusal: the element is in the list, the log says why, and
    /// `elementFile` is empty.
    [[nodiscard]] std::int32_t addElement(const Tag& element, bool saveFile, bool force);
    /// Takes an element out of the list, and out of the file that it came from or went to.
    /// `kRefused` for a reserved name.
    [[nodiscard]] std::int32_t removeElement(const std::string& name);

    [[nodiscard]] std::int32_t elementCount() const {
        return static_cast<std::int32_t>(elements_.size());
    }
    /// In order of arrival; null if `index` is out of range. Valid until the list changes.
    [[nodiscard]] const FileElement* element(std::int32_t index) const;
    /// The element of this very name, or null. Valid until the list changes.
    [[nodiscard]] const FileElement* findElement(const std::string& name) const;
    /// The file that an element came from or went to; "" if there is none.
    [[nodiscard]] std::string elementFile(const std::string& name) const;

protected:
    XMLFileManager() = default;
    XMLFileManager(const XMLFileManager&) = default;
    XMLFileManager& operator=(const XMLFileManager&) = default;

private:
    void addFile(const std::string& path);
    [[nodiscard]] bool isReserved(const std::string& name) const;

    std::vector<std::string> sourcePaths_;
    std::string destinationPath_;
    std::vector<FileElement> elements_;
    std::map<std::string, std::string> elementFiles_; // path by name
    std::vector<std::string> readOnlyNames_;          // lower case
    std::map<std::string, std::size_t> places_;       // in `elements_`, by name
};

} // namespace MVR
