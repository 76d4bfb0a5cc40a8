// Lists of named elements, such as presets, gathered from files.
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

/// A list of named elements from several files and folders, which the user sees as one. A derived
/// class defines the format of a file. Host thread only.
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
    /// The most files of one folder that are read: the first in byte order of their names.
    static constexpr std::size_t kMostFiles = 10000;

    static constexpr std::int32_t kDone = 0;
    static constexpr std::int32_t kRefused = 1; ///< the name is reserved

    /// Writes `element` to a file of its own in `folder` and returns its path. On failure logs a
    /// line, changes nothing and returns "".
    virtual std::string saveToFile(Tag element, std::string folder) = 0;
    /// Returns all elements of a file; none if the file is missing, or if it can't be read, which
    /// is logged.
    virtual std::vector<Tag> loadFile(std::string path) = 0;
    /// Removes what has the name of `element` from a file. A failure is logged.
    virtual void removeFromFile(Tag element, std::string path) = 0;
    /// Returns the name, or "" if there is none.
    [[nodiscard]] virtual std::string elementName(const Tag& element) const = 0;
    /// Returns the wildcard of the list's files: "*" and their ending.
    [[nodiscard]] virtual std::string fileFilter() const = 0;

    virtual ~XMLFileManager() = default;

    /// Adds a folder, or, if the fourth character from the end is ".", a single file. An element of
    /// a later source replaces an earlier one with its name.
    void addSourcePath(const std::string& path);
    /// Sets the folder that new files go to. Without one nothing is written.
    void setDestinationPath(const std::string& path);
    /// Reserves a name, in upper or lower case: no file and no user may add or remove an element of
    /// that name.
    void addReadOnlyName(const std::string& name);

    /// Reads all sources again. Elements that were only added to the list are lost.
    void reload();
    /// Adds an element to the list, replacing one with its name, and with `saveFile` writes it to a
    /// file. `force` ignores the reserved names. Returns `kDone`, or `kRefused` with nothing
    /// changed. If only the file can't be written, the element is in the list all the same, the log
    /// says why, and `elementFile` is empty.
    [[nodiscard]] std::int32_t addElement(const Tag& element, bool saveFile, bool force);
    /// Removes an element from the list and from the file that it came from or went to. Returns
    /// `kRefused` for a reserved name.
    [[nodiscard]] std::int32_t removeElement(const std::string& name);

    [[nodiscard]] std::int32_t elementCount() const {
        return static_cast<std::int32_t>(elements_.size());
    }
    /// Returns the element at `index`, in order of arrival, or null if `index` is out of range.
    /// Valid until the list changes.
    [[nodiscard]] const FileElement* element(std::int32_t index) const;
    /// Returns the element of exactly this name, or null. Valid until the list changes.
    [[nodiscard]] const FileElement* findElement(const std::string& name) const;
    /// Returns the file that an element came from or went to, or "" if there is none.
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
    std::map<std::string, std::size_t> places_;       // index in `elements_`, by name
};

} // namespace MVR
