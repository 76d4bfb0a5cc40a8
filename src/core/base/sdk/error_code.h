// The process-wide table of named codes. An operation that can fail returns the value of an
// entry; 0 is success.
#pragma once

#include "core/util/sdk/singleton.h"

#include <cstdint>
#include <list>
#include <string>

namespace MVR {

/// An entry of the table, and in its singleton the table itself. The core's own codes are rows of
/// error_codes.h. For a code of its own an adaptor, or another library that was given the table,
/// writes:
///
///     return ErrorCode::instance()->get("HOST_NOSCENE", "The host has no scene open",
///                                       ErrorCode::Error);
///
/// which registers the code at its first use, logs its message and gives its value. Values other
/// than those of the common codes, 1024 to 1032, differ from run to run; only identifiers stay.
/// Entries are never removed, and references to them last as long as the table. An adaptor may use
/// the core's table from setErrorCode(table) to releaseErrorCode(), all operations at any time
/// between; drivers and tools are given none, and their codes are their own. The order of the
/// virtual operations is frozen. All calls come on the host's thread.
class ErrorCode final : public Util::Singleton<ErrorCode> {
public:
    /// How grave a code is; decides the level at which it is logged.
    enum Type : std::int32_t {
        Fatal = 0,   ///< logged at level 1
        Error = 1,   ///< logged at level 1
        Warning = 2, ///< logged at level 2
        Notice = 3,  ///< logged at level 2
        Success = 4, ///< logged at level 1
    };

    /// An entry with the next free value, which is used up even if it is never registered.
    ErrorCode(std::string identifier, std::string message, std::int32_t type);
    ErrorCode(const ErrorCode& other);
    ~ErrorCode() override;

    virtual std::int32_t getType() const;
    virtual std::int32_t getValue() const;
    virtual const std::string& getIdentifier() const;
    virtual const std::string& getMessage() const;
    /// Registers the code if the table has no such identifier, then reports it.
    [[nodiscard]] virtual const ErrorCode& get(const std::string& identifier,
                                               const std::string& message, std::int32_t type);
    /// Logs the entry's message and returns the entry; the one of value -1 if there is none.
    [[nodiscard]] virtual const ErrorCode& report(const std::string& identifier);
    /// The entry with this value; if there is none, logs that and returns the one of value -1.
    [[nodiscard]] virtual const ErrorCode& find(std::int32_t value);
    virtual bool isRegistered(const std::string& identifier) const;
    virtual bool isRegistered(std::int32_t value) const;
    /// Adds a copy of `code` and returns `code`. Nothing is added if its value or its identifier
    /// is in use: then the result is "ERRORCODE_NONUNIQUEVALUE" or the older entry.
    virtual const ErrorCode& registerCode(const ErrorCode& code);
    /// Takes over value, identifier, message and type.
    virtual ErrorCode& operator=(const ErrorCode& other);
    virtual bool operator==(std::int32_t value) const;
    /// True if value and identifier both match.
    virtual bool operator==(const ErrorCode& other) const;
    virtual operator std::int32_t() const;

private:
    friend class Util::Singleton<ErrorCode>;
    ErrorCode();
    ErrorCode(std::int32_t value, std::string identifier, std::string message, std::int32_t type);

    std::int32_t value_;
    std::string identifier_;
    std::string message_;
    std::int32_t type_;
    // Of these all three are used in the singleton alone.
    std::list<ErrorCode> entries_;
    std::int32_t nextValue_ = 1024;
    bool isContainer_ = false;
};

} // namespace MVR
