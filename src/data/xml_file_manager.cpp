#include "data/sdk/xml_file_manager.h"

#include "core/base/sdk/log.h"
#include "platform/sdk/files.h"

#include <algorithm>
#include <utility>

namespace MVR {

namespace {

std::string lowerCase(std::string text) {
    for (char& c : text)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    return text;
}

bool isSingleFile(const std::string& path) {
    return path.size() >= 4 && path[path.size() - 4] == '.';
}

} // namespace

void XMLFileManager::addSourcePath(const std::string& path) {
    Log(Log::Notice).write("Adding source path", path, Log::OwnLevel);
    sourcePaths_.push_back(path);
}

void XMLFileManager::setDestinationPath(const std::string& path) {
    Log(Log::Notice).write("Setting destination path", path, Log::OwnLevel);
    destinationPath_ = path;
}

void XMLFileManager::addReadOnlyName(const std::string& name) {
    readOnlyNames_.push_back(lowerCase(name));
}

bool XMLFileManager::isReserved(const std::string& name) const {
    return std::find(readOnlyNames_.begin(), readOnlyNames_.end(), lowerCase(name)) !=
           readOnlyNames_.end();
}

void XMLFileManager::reload() {
    const Log entry("Reloading elements from files", Log::Notice);
    elements_.clear();
    elementFiles_.clear();
    places_.clear();
    for (const std::string& path : sourcePaths_) {
        if (isSingleFile(path)) {
            addFile(path);
            continue;
        }
        const std::string folder = path + "/";
        std::size_t read = 0;
        for (const Platform::FoundFile& file : Platform::listFiles(folder + fileFilter())) {
            if (!file.isRegular) // opening a pipe would block
                continue;
            if (read++ == kMostFiles) {
                Log(Log::Warning)
                    .write("Too many files, the rest is not read", path, Log::OwnLevel);
                break;
            }
            addFile(folder + file.name);
        }
    }
}

void XMLFileManager::addFile(const std::string& path) {
    for (const Tag& element : loadFile(path)) {
        elementFiles_[elementName(element)] = path;
        (void)addElement(element, false, false); // reserved names stay out
    }
}

std::int32_t XMLFileManager::addElement(const Tag& element, bool saveFile, bool force) {
    Log entry("Adding file element", Log::Notice);
    FileElement added{elementName(element), element};
    entry.write("name", added.name, Log::OwnLevel);
    if (!force && isReserved(added.name)) {
        entry.write("Name is reserved read-only. Aborting");
        return kRefused;
    }
    if (saveFile) {
        entry.write("Saving element to file");
        std::string& file = elementFiles_[added.name];
        file.clear();
        if (destinationPath_.empty()) {
            entry.write("No folder to save to", Log::Error);
        } else {
            (void)Platform::createFolder(destinationPath_); // a missing one shows on its first use
            file = saveToFile(element, destinationPath_);
        }
    }
    const auto [place, isNew] = places_.emplace(added.name, elements_.size());
    if (isNew) {
        entry.write("Adding new element");
        elements_.push_back(std::move(added));
    } else {
        entry.write("Replacing existing element");
        elements_[place->second] = std::move(added);
    }
    return kDone;
}

std::int32_t XMLFileManager::removeElement(const std::string& name) {
    Log entry("Deleting element", Log::Notice);
    if (isReserved(name)) {
        entry.write("Name is reserved read-only. Aborting");
        return kRefused;
    }
    const auto place = places_.find(name);
    if (place == places_.end())
        return kDone;
    const auto index = static_cast<std::ptrdiff_t>(place->second);
    const FileElement removed = std::move(elements_[place->second]);
    elements_.erase(elements_.begin() + index);
    places_.erase(place);
    for (auto& [other, at] : places_)
        if (at > static_cast<std::size_t>(index))
            --at;
    if (const std::string path = std::exchange(elementFiles_[removed.name], ""); !path.empty())
        removeFromFile(removed.data, path);
    return kDone;
}

const FileElement* XMLFileManager::element(std::int32_t index) const {
    return index >= 0 && index < elementCount() ? &elements_[static_cast<std::size_t>(index)]
                                                : nullptr;
}

const FileElement* XMLFileManager::findElement(const std::string& name) const {
    const auto place = places_.find(name);
    return place != places_.end() ? &elements_[place->second] : nullptr;
}

std::string XMLFileManager::elementFile(const std::string& name) const {
    const auto file = elementFiles_.find(name);
    return file != elementFiles_.end() ? file->second : std::string();
}

} // namespace MVR
