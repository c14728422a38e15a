#include "Arguments.h"

#include "Commands.h"

#include <charconv>
#include <cstdio>
#include <cstring>
#include <optional>

namespace {

constexpr int largestPicture = 16384; // pixels along one side

constexpr Command commands[] = {
    {"view", "FILE... [--id ID] [--2d | --3d | --both] [--skin NAME] [--watch]",
     "shows dialogs as windows, as panels in a scene, or both", -1, &runView},
    {"render",
     "FILE -o OUT.png [--2d | --3d] [--size WxH] [--scale S] [--id ID] [--skin NAME] "
     "[--open ID]",
     "makes a picture of a dialog, with no display", 1, &runRender},
    {"check", "FILE...", "reads files and says what is wrong with them", -1, &runCheck},
    {"tree", "FILE [--id ID]", "lists the elements of a dialog with the sizes of its layout", 1,
     &runTree},
};

// The whole word must be the number.
template <class Number> bool parse(std::string_view text, Number& number)
{
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size();
}

bool takeSize(Arguments& arguments, const std::string& value)
{
    const std::size_t cross = value.find('x');
    if (cross == std::string::npos) return false;
    int w = 0, h = 0;
    if (!parse(std::string_view(value).substr(0, cross), w) ||
        !parse(std::string_view(value).substr(cross + 1), h))
        return false;
    arguments.size = QSize(w, h);
    return w >= 1 && h >= 1 && w <= largestPicture && h <= largestPicture;
}

bool takeScale(Arguments& arguments, const std::string& value)
{
    return parse(value, arguments.scale) && arguments.scale >= 0.1 && arguments.scale <= 8;
}

template <std::string Arguments::*text>
bool takeText(Arguments& arguments, const std::string& value)
{
    arguments.*text = value;
    return !value.empty();
}

template <Arguments::Presentation presentation>
bool present(Arguments& arguments, const std::string&)
{
    const bool isFirst = arguments.presentation == Arguments::Unset;
    arguments.presentation = presentation;
    return isFirst;
}

bool watch(Arguments& arguments, const std::string&)
{
    arguments.watch = true;
    return true;
}

struct Option {
    const char* name;
    bool hasValue;
    const char* meaning;
    bool (*take)(Arguments&, const std::string& value);
};

// A command has the options that its synopsis names.
constexpr Option options[] = {
    {"-o", true, "-o OUT.png    the picture's file, replaced if it exists",
     &takeText<&Arguments::output>},
    {"--id", true, "--id ID       the element with this auditorID, not the first",
     &takeText<&Arguments::id>},
    {"--2d", false, "--2d          as a window", &present<Arguments::Window>},
    {"--3d", false, "--3d          as a panel in a scene", &present<Arguments::Scene>},
    {"--both", false, "--both        as both at once (the default)", &present<Arguments::Both>},
    {"--size", true, "--size WxH    size of the window or panel's picture, before scaling",
     &takeSize},
    {"--scale", true, "--scale S     pixels of the picture per pixel of the dialog, 0.1 to 8",
     &takeScale},
    {"--skin", true, "--skin NAME   look of the panel: a directory or an installed skin",
     &takeText<&Arguments::skin>},
    {"--open", true, "--open ID     the menu with this auditorID is open, with those it stands in",
     &takeText<&Arguments::open>},
    {"--watch", false, "--watch       reads a file again when it changes", &watch},
};

bool has(const Command& command, const Option& option)
{
    // Followed by a blank, a bracket or the end, so that no option is found within another.
    const std::size_t length = std::strlen(option.name);
    for (const char* at = command.synopsis; (at = std::strstr(at, option.name)); at += length) {
        if (std::strchr(" ]", at[length])) return true;
    }
    return false;
}

int misused(const Command* command, const std::string& what)
{
    if (command) {
        std::fprintf(stderr, "formweave %s: %s; usage: formweave %s %s\n", command->name,
                     what.c_str(), command->name, command->synopsis);
    } else {
        std::fprintf(stderr,
                     "formweave: %s; usage: formweave view|render|check|tree FILE... "
                     "(formweave --help tells more)\n",
                     what.c_str());
    }
    return Misused;
}

int help(const Command* command)
{
    if (command) {
        std::printf("usage: formweave %s %s\n\n%s %s.\n\n", command->name, command->synopsis,
                    command->name, command->summary);
        for (const Option& option : options) {
            if (has(*command, option)) std::printf("  %s\n", option.meaning);
        }
        std::printf("  --help        this text\n  --version     the version\n");
        return Done;
    }
    std::printf("usage: formweave COMMAND FILE... [OPTIONS]\n\n");
    for (const Command& each : commands) std::printf("  %-8s%s\n", each.name, each.summary);
    std::printf("\n  --help     this text; behind a command: its options\n"
                "  --version  the version\n");
    return Done;
}

int version()
{
    std::printf("formweave %s\n", FORMWEAVE_VERSION);
    return Done;
}

} // namespace

int runCommandLine(const std::vector<std::string>& words)
{
    const Command* command = nullptr;
    Arguments arguments;
    bool onlyFiles = false;
    for (std::size_t i = 0; i < words.size(); ++i) {
        std::string word = words[i];
        if (!onlyFiles && word == "--help") return help(command);
        if (!onlyFiles && word == "--version") return version();
        if (!onlyFiles && word == "--") {
            onlyFiles = true;
            continue;
        }
        const bool isOption = !onlyFiles && word.size() > 1 && word[0] == '-';
        if (!command) {
            if (isOption) return misused(nullptr, "unknown option " + word);
            for (const Command& each : commands) {
                if (word == each.name) command = &each;
            }
            if (!command) return misused(nullptr, "unknown command " + word);
            continue;
        }
        if (!isOption) {
            arguments.files.push_back(word);
            continue;
        }
        std::optional<std::string> value;
        const std::size_t equals = word.find('=');
        if (word[1] == '-' && equals != std::string::npos) {
            value = word.substr(equals + 1);
            word.resize(equals);
        }
        const Option* option = nullptr;
        for (const Option& each : options) {
            if (word == each.name && has(*command, each)) option = &each;
        }
        if (!option) return misused(command, "unknown option " + word);
        if (value && !option->hasValue) return misused(command, word + " takes no value");
        if (option->hasValue && !value) {
            if (i + 1 == words.size()) return misused(command, word + " needs a value");
            value = words[++i];
        }
        if (!option->take(arguments, value.value_or(std::string()))) {
            return misused(command, value ? "wrong value \"" + *value + "\" of " + word
                                          : word + " contradicts an option before it");
        }
    }
    if (!command) return misused(nullptr, "no command");
    if (arguments.files.empty()) return misused(command, "no file");
    const int count = static_cast<int>(arguments.files.size());
    if (command->maxFiles >= 0 && count > command->maxFiles)
        return misused(command, "more than one file");
    if (command->run == &runRender && arguments.output.empty())
        return misused(command, "no -o OUT.png");
    return command->run(arguments);
}
