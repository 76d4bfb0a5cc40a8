// The process-wide log: a line per event with date and time in UTC, a word for its level, and a
// tab per open entry; kept in memory and written through to a file.
#pragma once

#include "core/util/sdk/singleton.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace MVR {

/// The log, and with it the short-lived objects that write to it:
///
///     Log entry("Loading plugins", Log::Notice); // lines below stand one tab deeper
///     entry.write("path", path, Log::OwnLevel);
///     Log(Log::Error).write("Unable to open");
///
/// When a library may write to the core's log:
/// - an adaptor from setLog(log), where it calls Log::adopt(log), to releaseLog(), where it calls
///   Log::adopt(nullptr);
/// - a driver from loadDevices() on, with Log::adopt(info->log) there, as long as it is loaded;
/// - a tool never, for it is given none. Before and after these moments, and in a tool at any time,
///   lines go to a log of the library's own, which getText() reads and no user sees.
///
/// The order of its virtual operations is frozen. All calls come on the host's thread. A level
/// above the threshold costs no more than the test.
class Log final : public Util::Singleton<Log> {
public:
    /// Levels of lines, and thresholds: a line is written if its level is at most the threshold.
    enum Level : std::int32_t {
        OwnLevel = -1, ///< the level that the object was made with
        Critical = 0,  ///< always written
        Error = 1,
        Warning = 2,
        Notice = 3,
        Trace = 4, ///< the message network's lines; no setting reaches it
    };

    /// An object that writes at the current depth.
    explicit Log(std::int32_t level);
    /// An entry: writes `text`. Lines written while it lives stand one tab deeper.
    Log(std::string_view text, std::int32_t level);
    Log(const Log&) = delete;
    Log& operator=(const Log&) = delete;
    ~Log() override;

    /// Writes a line; a negative `level` means the object's own.
    virtual void write(const char* text, std::int32_t level = OwnLevel);
    virtual void write(std::string_view text, std::int32_t level = OwnLevel);

    /// Writes the line "name: value", with the same rule for `level`.
    void write(std::string_view name, std::string_view value, std::int32_t level);
    void write(std::string_view name, std::int32_t value, std::int32_t level);

    // From here on: for the owner of the log, at any time. File and threshold of an adopted log are
    // the core's business and the user's.

    /// Opens `path`, truncated, as the log file, and closes the one before. If the file can't be
    /// opened, the log continues in memory.
    static void setFile(const std::string& path);
    /// Ends the log file as an orderly unload does. The log continues in memory.
    static void closeFile();
    /// Returns all that was written since the library was loaded.
    static std::string getText();
    /// Writes all text to `path`, truncated. Returns false if that failed.
    [[nodiscard]] static bool saveTo(const std::string& path);

    static std::int32_t getThreshold() { return instance()->level_; }
    static void setThreshold(std::int32_t threshold) { instance()->level_ = threshold; }

private:
    friend class Util::Singleton<Log>;
    struct Store;

    Log(); // the singleton

    void endFile();
    void writeLine(std::string_view name, std::string_view separator, std::string_view value,
                   std::int32_t level) const;

    std::unique_ptr<Store> store_; // null but in the singleton
    Log* raised_ = nullptr;        // the log whose depth this entry raised
    std::int32_t depth_ = -1;      // the singleton's: the depth of the whole log
    std::int32_t level_ = Notice;  // the singleton's: the threshold
};

} // namespace MVR
