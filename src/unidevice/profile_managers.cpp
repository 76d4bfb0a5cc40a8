#include "unidevice/sdk/profile_managers.h"

#include "core/base/sdk/log.h"
#include "data/user_file.h"
#include "platform/folder_lock.h"
#include "platform/sdk/files.h"

#include <algorithm>
#include <sstream>
#include <utility>

namespace MVR {

namespace {

bool isPreset(const Tag& tag) {
    return tag.kind() == Tag::Element && tag.hasName(kProfileElement);
}

std::vector<std::string> presetNames(const Tag& collection) {
    std::vector<std::string> names;
    for (std::int32_t i = 0; i < collection.childCount(); ++i)
        if (isPreset(collection.child(i)))
            names.push_back(collection.child(i).attribute("name"));
    return names;
}

/// Removes the presets of this name; returns the number of those that are left.
std::int32_t takeOut(const std::string& name, Tag& tree, bool& isChanged) {
    std::int32_t left = 0;
    for (std::int32_t i = 0; i < tree.childCount(); ++i) {
        if (!isPreset(tree.child(i)))
            continue;
        if (tree.child(i).attribute("name") == name && tree.removeChild(Tag(tree.child(i)))) {
            isChanged = true;
            --i;
        } else {
            ++left;
        }
    }
    return left;
}

/// Parses the text of a file; returns "", or why it is refused.
std::string parse(const std::string& text, Tag& tree) {
    std::istringstream stream(text);
    const std::int32_t code = tree.read(stream);
    if (code != 0) {
        Tag::Place place; // reading removes line ends, so parse again with them
        if (Tag().parse(text, place) == 0)
            return Tag::describeFault(code);
        return std::string(Tag::describeFault(code)) + ", line " + std::to_string(place.line) +
               ", column " + std::to_string(place.column);
    }
    if (tree.childCount() > ProfileManager::kMostProfiles)
        return "more than " + std::to_string(ProfileManager::kMostProfiles) + " profiles";
    return "";
}

/// A separator would lead to another folder. All other rules for paths are the machine's.
bool canBeFileName(const std::string& name) {
    for (const char c : name)
        if (c == '/' || c == '\\' || (c >= 0 && c < ' ') || c == 0x7F)
            return false;
    return !name.empty();
}

void logFailure(const char* what, const std::string& path, const std::string& reason) {
    Log(Log::Error).write(what, path + ": " + reason, Log::OwnLevel);
}

constexpr const char* kNotSaved = "Unable to save profile";
constexpr const char* kNotRemoved = "Unable to remove profile from file";

} // namespace

bool ProfileManager::isCollection(const Tag& tag) const {
    return tag.kind() == Tag::Element && (tag.hasName(words_.root) || tag.hasName(words_.oldRoot));
}

std::string ProfileManager::elementName(const Tag& element) const {
    const Tag& preset = isCollection(element) ? element.child(0) : element;
    return isPreset(preset) ? preset.attribute("name") : std::string();
}

/// Returns the tree of a file of presets, an empty one if it is missing. Of a damaged file, of
/// which the log then tells, that is a collection with what was whole before the damage, or empty.
ProfileManager::PresetFile ProfileManager::readFile(const std::string& path) const {
    std::string text;
    Tag tree;
    std::string fault;
    if (Platform::readFile(path, text, kMostFileBytes))
        fault = parse(text, tree);
    else if (Platform::fileExists(path))
        fault = Platform::lastFileError();
    else
        return {};
    const bool isCut = !fault.empty();
    if (!isCut && !isPreset(tree) && !isCollection(tree))
        fault = "no profiles, its root is \"" + tree.name() + "\"";
    if (fault.empty())
        return {std::move(tree), false};
    logFailure("Unable to read profiles", path, fault);
    const bool isUsable = isCut && isCollection(tree) && tree.childCount() <= kMostProfiles;
    return {isUsable ? std::move(tree) : Tag(), true};
}

std::vector<Tag> ProfileManager::loadFile(std::string path) {
    return presetsOf(readFile(path).tree);
}

std::vector<Tag> ProfileManager::presetsOf(Tag tree) {
    std::vector<Tag> presets;
    if (isPreset(tree))
        presets.push_back(std::move(tree));
    else
        for (std::int32_t i = 0; i < tree.childCount(); ++i)
            if (isPreset(tree.child(i)))
                presets.push_back(std::move(tree.child(i)));
    return presets;
}

/// Writes a file; returns "", or why it couldn't be written.
std::string ProfileManager::writeFile(const Tag& file, const std::string& path) {
    const std::string text = file.toText("", "", "");
    Tag again;
    // A text that can be written into an attribute can't always be read again.
    if (text.size() > kMostFileBytes || !parse(text, again).empty() ||
        presetNames(again) != presetNames(file))
        return "its text could not be read again";
    return file.save(path) ? std::string() : Platform::lastFileError();
}

std::string ProfileManager::saveToFile(Tag element, std::string folder) {
    const std::string name = elementName(element);
    const std::string path = folder + "/" + name + (words_.filter + 1);
    if (!canBeFileName(name)) {
        logFailure(kNotSaved, name, "the name can't be that of a file");
        return "";
    }
    Tag file = std::move(element);
    if (isPreset(file)) {
        Tag preset = std::exchange(file, Tag::element(words_.root));
        file.addChild(std::move(preset));
    }
    const Platform::FolderLock lock(folder);
    if (!lock.isHeld()) {
        logFailure(kNotSaved, path, lock.getReason());
        return "";
    }
    PresetFile before = readFile(path);
    if (before.isDamaged && !keepDamagedFile(path))
        return "";
    // The file may be a collection, or the file of another preset whose name differs only in case.
    const std::vector<std::string> saved = presetNames(file);
    for (Tag& other : presetsOf(std::move(before.tree)))
        if (std::find(saved.begin(), saved.end(), elementName(other)) == saved.end())
            file.addChild(std::move(other));
    const std::string fault = writeFile(file, path);
    if (fault.empty())
        return path;
    logFailure(kNotSaved, path, fault);
    return "";
}

void ProfileManager::removeFromFile(Tag element, std::string path) {
    const std::string name = elementName(element);
    const Platform::FolderLock lock(path.substr(0, path.find_last_of("/\\") + 1) + ".");
    if (!lock.isHeld()) {
        logFailure(kNotRemoved, path, lock.getReason());
        return;
    }
    auto [tree, isDamaged] = readFile(path);
    bool isChanged = isPreset(tree) && tree.attribute("name") == name;
    const std::int32_t left = isPreset(tree) ? 0 : takeOut(name, tree, isChanged);
    if (!isChanged)
        return; // somebody else removed it
    if (isDamaged && !keepDamagedFile(path))
        return;
    std::string fault;
    if (left > 0)
        fault = writeFile(tree, path);
    else if (!Platform::deleteFile(path))
        fault = Platform::lastFileError();
    if (!fault.empty())
        logFailure(kNotRemoved, path, fault);
}

} // namespace MVR
