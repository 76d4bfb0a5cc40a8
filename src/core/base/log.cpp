#include "core/base/sdk/log.h"

#include "core/util/thread_check.h"
#include "platform/sdk/clock.h"
#include "platform/sdk/files.h"

#include <cstddef>
#include <fstream>
#include <utility>

namespace MVR {

namespace {

void appendTwoDigits(std::string& line, std::int32_t number) {
    line += static_cast<char>('0' + number / 10 % 10);
    line += static_cast<char>('0' + number % 10);
}

void appendTime(std::string& line) {
    const Platform::UtcTime now = Platform::utcNow();
    appendTwoDigits(line, now.year / 100);
    appendTwoDigits(line, now.year % 100);
    appendTwoDigits(line, now.month);
    appendTwoDigits(line, now.day);
    line += ' ';
    appendTwoDigits(line, now.hour);
    line += ':';
    appendTwoDigits(line, now.minute);
    line += ':';
    appendTwoDigits(line, now.second);
}

constexpr std::string_view kLevelWords[] = {"CRITICAL", "ERROR", "WARNING", "NOTICE"};

std::string makeLine(std::int32_t level, std::int32_t depth, std::string_view name,
                     std::string_view separator, std::string_view text) {
    std::string line;
    line.reserve(40 + name.size() + separator.size() + text.size());
    appendTime(line);
    line += " (";
    if (level <= Log::Notice) {
        line += kLevelWords[level];
        line += "): ";
    }
    if (depth >= 0)
        line.append(static_cast<std::size_t>(depth) + 1, '\t');
    line += name;
    line += separator;
    line += text;
    line += '\n';
    return line;
}

} // namespace

struct Log::Store {
    std::unique_ptr<std::ofstream> file; // null: none is open
    std::string text;
};

Log::Log() : store_(std::make_unique<Store>()) {}

Log::Log(std::int32_t level) : depth_(instance()->depth_), level_(level) {}

Log::Log(std::string_view text, std::int32_t level)
    : raised_(instance()), depth_(++raised_->depth_), level_(level) {
    writeLine(text, {}, {}, level);
}

Log::~Log() {
    // Another log may have been adopted since; the raised one may be gone then.
    if (raised_ != nullptr && raised_ == instance())
        --raised_->depth_;
    endFile();
}

void Log::endFile() {
    if (store_ == nullptr)
        return;
    if (store_->file != nullptr)
        *store_->file << "[EOF]\n";
    store_->file.reset();
}

void Log::closeFile() {
    instance()->endFile();
}

void Log::write(const char* text, std::int32_t level) {
    write(std::string_view(text), level);
}

void Log::write(std::string_view text, std::int32_t level) {
    writeLine(text, {}, {}, level);
}

void Log::write(std::string_view name, std::string_view value, std::int32_t level) {
    writeLine(name, ": ", value, level);
}

void Log::write(std::string_view name, std::int32_t value, std::int32_t level) {
    writeLine(name, ": ", std::to_string(value), level);
}

void Log::writeLine(std::string_view name, std::string_view separator, std::string_view value,
                    std::int32_t level) const {
    Util::checkHostThread();
    if (level < 0)
        level = level_;
    Log& whole = *instance();
    if (level < 0 || level > whole.level_)
        return;
    const std::string line = makeLine(level, depth_, name, separator, value);
    whole.store_->text += line;
    if (whole.store_->file != nullptr)
        *whole.store_->file << line;
}

void Log::setFile(const std::string& path) {
    Store& store = *instance()->store_;
    store.file.reset(); // before the same file is truncated
    auto file = std::make_unique<std::ofstream>(Platform::foldPath(path),
                                                std::ios::binary | std::ios::trunc);
    store.file = file->is_open() ? std::move(file) : nullptr;
}

std::string Log::getText() {
    return instance()->store_->text;
}

bool Log::saveTo(const std::string& path) {
    return Platform::writeFileAtomic(path, instance()->store_->text);
}

} // namespace MVR
