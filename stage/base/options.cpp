#include "stage/base/options.h"

#include "stage/base/nearest_name.h"
#include "stage/base/text.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string_view>

namespace Stage {

namespace {

const Option* findOption(const std::vector<Option>& options, std::string_view name) {
    const auto found = std::find_if(options.begin(), options.end(),
                                    [name](const Option& option) { return option.name == name; });
    return found != options.end() ? &*found : nullptr;
}

std::string unknownOption(const std::vector<Option>& options, const std::string& name) {
    std::vector<std::string> names;
    for (const Option& option : options)
        names.emplace_back(option.name);
    return "no option named " + name + askForNearest(name, names);
}

/// Returns the number without an exponent: 1000000, not 1e+06.
std::string toPlainText(double number) {
    return number == std::round(number) ? std::to_string(std::llround(number)) : toText(number);
}

const char* meaning(ExitCode code) {
    switch (code) {
    case ExitCode::Ok:
        return "success";
    case ExitCode::Usage:
        return "an option is wrong or missing";
    case ExitCode::CoreOrToolMissing:
        return "the core or a tool is missing or can't be used";
    case ExitCode::BadBinding:
        return "there is no tool, property, control or object of a given name";
    case ExitCode::OutputNotWritten:
        return "a file or the output could not be written; a file's old content is intact";
    case ExitCode::CutShort:
        return "stopped by Ctrl+C before the end; what was recorded is kept";
    case ExitCode::CheckFailed:
        return "a requested check failed";
    case ExitCode::BadFile:
        return "a scene, model or profile can't be read; the message says where and why";
    case ExitCode::Incomplete:
        return "some tools, or parts of them, could not be created; the others exist";
    case ExitCode::NotAsPerformed:
        return "the take is written, but lacks something of what was performed; the messages tell";
    }
    return "";
}

} // namespace

bool readArguments(const std::vector<std::string>& words, const std::vector<Option>& options,
                   std::vector<Argument>& arguments, std::string& error) {
    const auto isOperand = [](const Option& option) { return option.name[0] != '-'; };
    auto operand = std::find_if(options.begin(), options.end(), isOperand);
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string& word = words[i];
        if (word.rfind("-", 0) != 0) {
            if (operand == options.end()) {
                error = "\"" + word + "\" doesn't belong to an option";
                return false;
            }
            if (word.empty()) { // an unset shell variable
                error = std::string(operand->name) + " must not be empty";
                return false;
            }
            arguments.push_back({operand->name, word});
            operand = std::find_if(operand + 1, options.end(), isOperand);
            continue;
        }
        const std::size_t equals = word.find('=');
        const std::string name = word.substr(0, equals);
        const Option* option = findOption(options, name);
        if (option == nullptr) {
            error = unknownOption(options, name);
            return false;
        }
        Argument argument{name, {}};
        if (option->argument == nullptr) {
            if (equals != std::string::npos) {
                error = name + " accepts no value";
                return false;
            }
        } else if (equals != std::string::npos) {
            argument.value = word.substr(equals + 1);
        } else if (++i < words.size()) {
            argument.value = words[i];
        } else {
            error = name + " needs a value: " + option->argument;
            return false;
        }
        if (option->argument != nullptr && argument.value.empty()) {
            error = name + " must not be empty";
            return false;
        }
        arguments.push_back(std::move(argument));
    }
    if (operand != options.end())
        error = std::string(operand->name) + " is missing: " + operand->help;
    return operand == options.end();
}

bool readNumber(const Argument& argument, double least, double most, double& out,
                std::string& error) {
    double number = 0.0;
    if (!toNumber(argument.value, number)) {
        error = argument.name + ": \"" + argument.value + "\" is not a number";
    } else if (number < least) {
        error = argument.name + " must be at least " + toPlainText(least);
    } else if (number > most) {
        error = argument.name + " must be at most " + toPlainText(most);
    } else {
        out = number;
        return true;
    }
    return false;
}

bool readNumber(const Argument& argument, int least, int most, int& out, std::string& error) {
    int number = 0;
    if (!toNumber(argument.value, number) || number < least || number > most) {
        error = argument.name + " must be a whole number from " + std::to_string(least) + " to " +
                std::to_string(most) + ", not \"" + argument.value + "\"";
        return false;
    }
    out = number;
    return true;
}

std::string describe(const std::vector<Option>& options) {
    constexpr std::size_t kHelpColumn = 30;
    std::string text;
    for (const Option& option : options) {
        std::string line = std::string("  ") + option.name;
        if (option.argument != nullptr)
            line += std::string(" ") + option.argument;
        if (line.size() + 2 > kHelpColumn) {
            text += line + '\n';
            line.clear();
        }
        line.resize(kHelpColumn, ' ');
        text += line;
        for (const char* c = option.help; *c != '\0'; ++c) {
            text += *c;
            if (*c == '\n')
                text.append(kHelpColumn, ' ');
        }
        text += '\n';
    }
    return text;
}

std::string describe(std::vector<ExitCode> codes) {
    std::sort(codes.begin(), codes.end());
    std::string text;
    for (const ExitCode code : codes)
        text += "  " + std::to_string(static_cast<int>(code)) + "  " + meaning(code) + '\n';
    return text;
}

void complain(const std::string& message) {
    std::fprintf(stderr, "mirvane-stage: %s\n", message.c_str());
}

} // namespace Stage
