// The two kinds of preset of a tool: which controls drive it, and the values of its panel.
#pragma once

#include "data/sdk/xml_file_manager.h"

#include <cstdint>
#include <string>
#include <vector>

namespace MVR {

/// The element of a preset, and of the bindings or panel values of one tool.
constexpr const char* kProfileElement = "profile";
/// The preset of a tool's first values; reserved in every list.
constexpr const char* kFactorySettings = "Factory Settings";
/// The preset that a new tool starts with if the user has saved one.
constexpr const char* kStartProfile = "Start Profile";

/// What both lists share. A preset is an element "profile" with a name. A file holds one alone, or
/// several in a collection.
///
/// Several processes may change the same folder: a file is read, changed and written back under the
/// folder's lock, and replaced as a whole. Readers need no lock. A damaged file is copied, as its
/// name with ".bad", before it is changed. When an operation may be called is told by
/// XMLFileManager.
class ProfileManager : public XMLFileManager {
public:
    static constexpr std::uint64_t kMostFileBytes = 16u << 20; ///< of one file
    static constexpr std::int32_t kMostProfiles = 10000;       ///< of one collection

    /// Names the file after the preset, so it refuses "", a name with a separator or a control
    /// character, and a name that couldn't be read again. Presets of other names than those saved
    /// stay in the file.
    std::string saveToFile(Tag element, std::string folder) override;
    /// Returns what is whole before the damage in an incomplete collection, and nothing for another
    /// incomplete file or one that exceeds the limits.
    std::vector<Tag> loadFile(std::string path) override;
    /// Deletes a file that is left without presets. A file that isn't a list of presets stays.
    void removeFromFile(Tag element, std::string path) override;
    /// Returns the name of a preset, or of the first one of a collection.
    [[nodiscard]] std::string elementName(const Tag& element) const override;
    [[nodiscard]] std::string fileFilter() const override { return words_.filter; }

protected:
    /// The words of a list's format; not owned.
    struct Words {
        const char* filter;  ///< "*" and the ending of its files
        const char* root;    ///< the collection, written and read
        const char* oldRoot; ///< an older collection, only read
    };
    explicit ProfileManager(const Words& words) : words_(words) {}

private:
    struct PresetFile {
        Tag tree; ///< empty: nothing of it can be used
        bool isDamaged = false;
    };

    [[nodiscard]] bool isCollection(const Tag& tag) const;
    [[nodiscard]] PresetFile readFile(const std::string& path) const;
    [[nodiscard]] static std::vector<Tag> presetsOf(Tag tree);
    [[nodiscard]] static std::string writeFile(const Tag& file, const std::string& path);

    Words words_;
};

/// The presets of a tool's bindings, ".oip".
class InputProfileManager final : public ProfileManager {
public:
    InputProfileManager() : ProfileManager({"*.oip", "unidevice", "unidevice"}) {}
};

/// The presets of a tool's panel, ".ocp".
class ConfigProfileManager final : public ProfileManager {
public:
    ConfigProfileManager() : ProfileManager({"*.ocp", "ConfigProfile", "CameraConfig"}) {}
};

} // namespace MVR
