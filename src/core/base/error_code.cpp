#include "core/base/sdk/error_code.h"

#include "core/base/error_codes.h"
#include "core/base/sdk/log.h"

#include <algorithm>
#include <utility>

namespace MVR {

namespace {

std::int32_t logLevelOf(std::int32_t type) {
    return type == ErrorCode::Warning || type == ErrorCode::Notice ? Log::Warning : Log::Error;
}

const ErrorCode& getRow(ErrorCode& table, const CodeRow& row) {
    return table.get(row.identifier, row.message, row.type);
}

} // namespace

ErrorCode::ErrorCode() : ErrorCode(-1, "NOTFOUND", "(Error code not found)", Error) {
    isContainer_ = true;
    entries_.push_back(ErrorCode(0, "SUCCESS", "The function returned successfully", Success));
}

ErrorCode::ErrorCode(std::string identifier, std::string message, std::int32_t type)
    : ErrorCode(instance()->nextValue_++, std::move(identifier), std::move(message), type) {}

ErrorCode::ErrorCode(std::int32_t value, std::string identifier, std::string message,
                     std::int32_t type)
    : value_(value), identifier_(std::move(identifier)), message_(std::move(message)), type_(type) {
}

ErrorCode::ErrorCode(const ErrorCode& other)
    : Singleton(other), value_(other.value_), identifier_(other.identifier_),
      message_(other.message_), type_(other.type_) {}

ErrorCode::~ErrorCode() = default;

ErrorCode& ErrorCode::operator=(const ErrorCode& other) {
    value_ = other.value_;
    identifier_ = other.identifier_;
    message_ = other.message_;
    type_ = other.type_;
    return *this;
}

std::int32_t ErrorCode::getType() const {
    return type_;
}

std::int32_t ErrorCode::getValue() const {
    return value_;
}

const std::string& ErrorCode::getIdentifier() const {
    return identifier_;
}

const std::string& ErrorCode::getMessage() const {
    return message_;
}

const ErrorCode& ErrorCode::get(const std::string& identifier, const std::string& message,
                                std::int32_t type) {
    if (!isRegistered(identifier))
        registerCode(ErrorCode(identifier, message, type));
    return report(identifier);
}

const ErrorCode& ErrorCode::report(const std::string& identifier) {
    const auto found =
        std::find_if(entries_.begin(), entries_.end(), [&identifier](const ErrorCode& entry) {
            return entry.identifier_ == identifier;
        });
    const ErrorCode& entry = found != entries_.end() ? *found : *instance();
    Log log(logLevelOf(entry.type_));
    log.write("Return value", entry.message_, Log::OwnLevel);
    return entry;
}

const ErrorCode& ErrorCode::find(std::int32_t value) {
    for (const ErrorCode& entry : entries_)
        if (entry.value_ == value)
            return entry;
    Log(Log::Warning).write("Errorcode not found. value", value, Log::OwnLevel);
    return *instance();
}

bool ErrorCode::isRegistered(const std::string& identifier) const {
    return std::any_of(
        entries_.begin(), entries_.end(),
        [&identifier](const ErrorCode& entry) { return entry.identifier_ == identifier; });
}

bool ErrorCode::isRegistered(std::int32_t value) const {
    return std::any_of(
        entries_.begin(), entries_.end(),
        [value](const ErrorCode& entry) { return entry.value_ == value; });
}

const ErrorCode& ErrorCode::registerCode(const ErrorCode& code) {
    Log log("Register Code", Log::Notice);
    log.write("new_value", code.value_, Log::OwnLevel);
    log.write("new_identifier", code.identifier_, Log::OwnLevel);
    log.write("new_message", code.message_, Log::OwnLevel);
    log.write("new_type", code.type_, Log::OwnLevel);
    if (!isContainer_) {
        log.write("Error: Trying to register error code to a non-container", code.message_,
                  Log::Error);
        return getRow(*instance(), Codes::kNonContainer);
    }
    if (isRegistered(code.value_)) {
        log.write("Error: Trying to register error code with a non-unique value", code.value_,
                  Log::Error);
        return getRow(*this, Codes::kNonUniqueValue);
    }
    if (isRegistered(code.identifier_)) {
        log.write("Error: Trying to register error code with a non-unique identifier",
                  code.identifier_, Log::Error);
        return report(code.identifier_);
    }
    entries_.push_back(code);
    return code;
}

bool ErrorCode::operator==(std::int32_t value) const {
    return getValue() == value;
}

bool ErrorCode::operator==(const ErrorCode& other) const {
    return value_ == other.value_ && identifier_ == other.identifier_;
}

ErrorCode::operator std::int32_t() const {
    return getValue();
}

} // namespace MVR
