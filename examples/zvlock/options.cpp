#include "examples/zvlock/options.h"

#include "examples/zvlock/exit_status.h"
#include "examples/zvlock/help.h"

#include <CLI/CLI.hpp>

#include <algorithm>

namespace zorvel {
namespace zvlock {

namespace {

const double longestLimitSeconds = 1e9;

/// The words before and after the first "--". The parser sees the former only:
/// it gives some words, "[a,b]" for one, a meaning of its own, and those of the
/// command are none of its business.
struct Split
{
    explicit Split(const std::vector<NativeText>& arguments)
    {
        const auto isSeparator = [](const NativeText& word) { return inCodePage(word) == "--"; };
        const auto separator = std::find_if(arguments.begin(), arguments.end(), isSeparator);
        std::transform(arguments.begin(), separator, std::back_inserter(own), inCodePage);
        if (separator != arguments.end())
            command.assign(separator + 1, arguments.end());
    }

    std::vector<std::string> own;
    std::vector<NativeText> command;
};

/// The usage tells of the command and of what excludes what.
class Help : public CLI::Formatter
{
public:
    std::string make_usage(const CLI::App*, std::string) const override { return usage; }
    std::string make_option_opts(const CLI::Option* option) const override
    {
        return option->nonpositional() && option->get_expected_min() > 0 ? " SECONDS" : "";
    }
};

/// What the parser fills.
struct Answers
{
    bool read = false;
    bool write = false;
    bool exclusive = false;
    double seconds = -1;
};

/// Whoever is used to other programs forgets the "--".
std::string complaint(const CLI::App* app, const CLI::Error& error)
{
    const bool isExtra = error.get_exit_code() == static_cast<int>(CLI::ExitCodes::ExtrasError);
    return "zvlock: " + CLI::FailureMessage::simple(app, error) + (isExtra ? "A command stands behind \"--\".\n" : "");
}

void declare(CLI::App& app, Options& options, Answers& answers)
{
    app.formatter(std::make_shared<Help>());
    app.footer(explanation);
    app.allow_windows_style_options(false);
    app.failure_message(complaint);
    app.add_option("DIRECTORY", options.directory, "The directory to be locked; it must exist and be writable")
        ->required();
    CLI::Option* const read = app.add_flag("--read", answers.read, "Share the directory with other readers");
    CLI::Option* const write = app.add_flag("--write", answers.write, "Have it alone, no reader either (the default)");
    CLI::Option* const exclusive =
        app.add_flag("--exclusive", answers.exclusive, "Take the plain exclusive lock, see below");
    CLI::Option* const timeout =
        app.add_option("--timeout", answers.seconds, "How long to wait for the lock; without it: without limit")
            ->check(CLI::Range(0.0, longestLimitSeconds));
    app.add_flag("--status", options.status, "List the lock files of the directory and run nothing")
        ->excludes(read, write, exclusive, timeout);
    read->excludes(write, exclusive);
    write->excludes(exclusive);
}

/// What the parser's own rules cannot say.
void check(const Options& options, const Answers& answers)
{
    if (answers.seconds != answers.seconds)
        throw CLI::ValidationError("--timeout", "not a number");
    if (options.status && !options.command.empty())
        throw CLI::ValidationError("--status", "runs no command");
    if (!options.status && options.command.empty())
        throw CLI::ParseError("no command; it stands behind the directory: DIRECTORY -- COMMAND...",
                              CLI::ExitCodes::RequiredError);
}

/// Paths of the library have no blanks at their ends; where the user's has some
/// they would be dropped, and another directory locked.
std::string withoutBlankEnds(const std::string& path)
{
    const char* const blanks = " \t\n\v\f\r";
    if (path.empty())
        return path;
    const std::string begin = path.find_first_of(blanks) == 0 ? "./" : "";
    const std::string end = path.find_last_of(blanks) == path.size() - 1 ? "/" : "";
    return begin + path + end;
}

boost::posix_time::time_duration limitOf(double seconds, Kind kind)
{
    if (seconds < 0)
        return boost::posix_time::pos_infin;
    const boost::posix_time::microseconds limit(static_cast<long long>(seconds * 1e6));
    return std::max<boost::posix_time::time_duration>(limit, shortestLimit(kind));
}

}  // namespace

boost::posix_time::time_duration shortestLimit(Kind kind)
{
    return boost::posix_time::seconds(kind == Kind::exclusive ? 0 : 1);
}

std::optional<Options> optionsOf(const std::vector<NativeText>& arguments, int& status)
{
    Split split(arguments);
    Options options;
    Answers answers;
    CLI::App app(description, "zvlock");
    declare(app, options, answers);
    try {
        options.command = split.command;
        // The parser takes them from the end.
        std::reverse(split.own.begin(), split.own.end());
        app.parse(split.own);
        check(options, answers);
    } catch (const CLI::ParseError& error) {
        status = app.exit(error) == 0 ? done : failed;
        return std::nullopt;
    }
    options.directory = withoutBlankEnds(options.directory);
    options.kind = answers.exclusive ? Kind::exclusive : answers.read ? Kind::read : Kind::write;
    options.limit = limitOf(answers.seconds, options.kind);
    return options;
}

}  // namespace zvlock
}  // namespace zorvel
