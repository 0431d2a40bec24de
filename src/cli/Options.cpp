#include "Options.h"

#include "Console.h"
#include "Export/Backups.h"
#include "Export/Inventory.h"
#include "HelpFormatter.h"
#include "Moment.h"
#include "Result.h"
#include "TypeNames.h"

#include <QCoreApplication>

#include <CLI/CLI.hpp>

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <string>
#include <vector>

using namespace Qt::StringLiterals;
using Export::Failure;

namespace Cli {

namespace {

// As the command line gives it, before anything of it is looked up.
struct Raw
{
    std::string backup;
    std::string output;
    std::vector<std::string> only;
    std::vector<std::string> skip;
    std::vector<std::string> formats;
    std::string passwordFile;
    std::optional<std::string> since;
    std::optional<std::string> until;
    std::vector<std::string> chats;
    bool noSpaceCheck = false;
};

void describe(CLI::App &app, Raw &raw, Options &options)
{
    app.name("dataexport");
    app.description("Exports a phone backup into folders of ordinary files.\n"
                    "The backup is only read; nothing in it is ever changed.");
    app.formatter(std::make_shared<HelpFormatter>());
    app.footer(helpFooter().toStdString());
    app.add_option("BACKUP", raw.backup, "The backup's folder, or the folder that contains it");
    app.add_option("OUTPUT", raw.output, "Folder for the exported files; created if missing");

    const auto addTypes =
        [&app](const char *name, std::vector<std::string> &words, const char *text) {
            app.add_option(name, words, text)
                ->type_name("TYPE")
                ->option_text("TYPE,...")
                ->type_size(1)
                ->allow_extra_args(false)
                ->group("What to export");
        };
    app.add_flag("--list", options.list, "List what the backup contains; export nothing")
        ->group("What to export");
    addTypes("--only", raw.only, "Export only these types");
    addTypes("--skip", raw.skip, "Export all types except these");
    app.add_option("--formats",
                   raw.formats,
                   "Write these formats: archive (pages to browse and\n"
                   "search), page (one page per type), csv, vcard,\n"
                   "json; by default, all")
        ->type_name("FORMAT")
        ->option_text("FORMAT,...")
        ->type_size(1)
        ->allow_extra_args(false)
        ->group("What to export");
    app.add_flag("--convert-heic",
                 options.convertHeic,
                 "Also save each HEIC picture as a JPEG, for computers\n"
                 "that cannot open HEIC")
        ->group("What to export");
    app.add_flag("--convert-audio",
                 options.convertAudio,
                 "Also save voice messages in AMR or CAF as files\n"
                 "that browsers can play")
        ->group("What to export");

    const auto addFilter = [&app](const char *name,
                                  std::optional<std::string> &value,
                                  const char *type,
                                  const char *text) {
        app.add_option(name, value, text)
            ->type_name(type)
            ->option_text(type)
            ->group("Which messages");
    };
    addFilter("--since",
              raw.since,
              "DATE",
              "Messages from this day on: YYYY-MM-DD, or\n"
              "\"YYYY-MM-DD hh:mm\", in local time");
    addFilter("--until",
              raw.until,
              "DATE",
              "Messages up to the end of this day, or before this\n"
              "minute if a time is given");
    app.add_option("--chat",
                   raw.chats,
                   "Conversations with TEXT in their name, or with a\n"
                   "person of that name, phone number or address;\n"
                   "can be repeated")
        ->type_name("TEXT")
        ->option_text("TEXT")
        ->type_size(1)
        ->allow_extra_args(false)
        ->group("Which messages");

    app.add_option("--password-file",
                   raw.passwordFile,
                   "Read the password from the first line of FILE, or\n"
                   "of standard input if FILE is \"-\"; by default, it\n"
                   "is taken from DATAEXPORT_PASSWORD or asked for")
        ->type_name("FILE")
        ->option_text("FILE")
        ->group("Encrypted backups");

    app.add_flag("--into-existing",
                 options.intoExisting,
                 "Allow an OUTPUT that contains files; copies are\n"
                 "renamed if a name is taken, pages of an earlier\n"
                 "export are replaced")
        ->group("Output folder");
    app.add_flag("--no-space-check",
                 raw.noSpaceCheck,
                 "Start even if there seems to be too little space\n"
                 "(for disks that compress files)")
        ->group("Output folder");

    app.add_flag("--json", options.json, "Print the list or summary as JSON")
        ->group("What to print");
    app.add_flag("-q,--quiet", options.quiet, "Show only warnings and errors")
        ->group("What to print");

    app.set_help_flag("-h,--help", "Show this help and exit")->group("Other");
    app.set_version_flag("--version",
                         "dataexport " + QCoreApplication::applicationVersion().toStdString(),
                         "Show the version and exit")
        ->group("Other");
}

QString fromArgument(const std::string &text)
{
    return QString::fromLocal8Bit(text.data(), static_cast<qsizetype>(text.size()));
}

Failure usage(const QString &what, const QString &advice = u"See dataexport --help."_s)
{
    return { Failure::Cause::Unsuitable, what, {}, advice };
}

QString possibleTypes()
{
    return u"Types: %1."_s.arg(TypeNames::words().join(u", "_s));
}

// None when the option was not given; an empty value, a variable of a script that was not set, must
// not mean that.
std::variant<QList<int>, Failure> codesOf(const char *option, const std::vector<std::string> &given)
{
    QList<int> codes;
    QStringList words;
    for (const std::string &word : given)
        words += fromArgument(word).trimmed();
    const QStringList parts = words.join(u',').split(u',', Qt::SkipEmptyParts);
    for (const QString &part : parts) {
        const auto code = TypeNames::code(part);
        if (!code)
            return usage(u"Unknown type “%1”."_s.arg(part), possibleTypes());
        codes += *code;
    }
    if (codes.isEmpty() && !given.empty())
        return usage(u"%1 needs a type."_s.arg(QLatin1StringView(option)), possibleTypes());
    return codes;
}

std::variant<QList<int>, Failure> selectedTypes(const Raw &raw)
{
    const auto only = codesOf("--only", raw.only);
    const auto skip = codesOf("--skip", raw.skip);
    for (const auto *side : { &only, &skip }) {
        if (const auto *failure = std::get_if<Failure>(side))
            return *failure;
    }
    const auto &wanted = std::get<0>(only);
    const auto &unwanted = std::get<0>(skip);
    QList<int> types;
    const QList<int> offered = Export::Backup::dataTypes();
    for (const int code : offered) {
        if ((wanted.isEmpty() || wanted.contains(code)) && !unwanted.contains(code))
            types += code;
    }
    if (types.isEmpty())
        return usage(u"--only and --skip leave nothing to export."_s);
    return types;
}

std::variant<Export::Formats, Failure> formatsOf(const Raw &raw, const QList<int> &types)
{
    Export::Formats formats;
    if (raw.formats.empty())
        return formats;
    formats = { false, false, false, false, false };
    const std::array known { std::pair(u"archive", &formats.archive),
                             std::pair(u"page", &formats.page),
                             std::pair(u"csv", &formats.csv),
                             std::pair(u"vcard", &formats.vcard),
                             std::pair(u"json", &formats.json) };
    QStringList words;
    for (const std::string &word : raw.formats)
        words += fromArgument(word).split(u',');
    for (const QString &word : std::as_const(words)) {
        const auto found = std::find_if(known.begin(), known.end(), [&](const auto &format) {
            return word.trimmed().compare(QStringView(format.first), Qt::CaseInsensitive) == 0;
        });
        if (found == known.end())
            return usage(u"Unknown format “%1”."_s.arg(word.trimmed()),
                         u"Formats: archive, page, csv, vcard, json."_s);
        *found->second = true;
    }
    const bool isAny = formats.hasRecords()
        || std::any_of(types.begin(), types.end(), [&](int code) { return formats.areOf(code); });
    if (!isAny)
        return usage(u"None of the selected types is written in any of these formats."_s);
    return formats;
}

std::optional<Failure> readMoment(const char *option,
                                  const std::optional<std::string> &text,
                                  QDateTime (*read)(const QString &),
                                  QDateTime &moment)
{
    if (!text)
        return std::nullopt;
    moment = read(fromArgument(*text));
    if (moment.isValid())
        return std::nullopt;
    return usage(
        u"%1: “%2” is not a valid date."_s.arg(QLatin1StringView(option), fromArgument(*text)),
        u"Use YYYY-MM-DD or \"YYYY-MM-DD hh:mm\"."_s);
}

std::variant<Export::MessageFilter, Failure> messageFilter(const Raw &raw, const QList<int> &types)
{
    Export::MessageFilter filter;
    if (auto failure = readMoment("--since", raw.since, &Moment::first, filter.since))
        return *failure;
    if (auto failure = readMoment("--until", raw.until, &Moment::behind, filter.until))
        return *failure;
    if (filter.since.isValid() && filter.until.isValid() && filter.since >= filter.until)
        return usage(u"There is no time between --since and --until."_s);
    for (const std::string &chat : raw.chats) {
        filter.chats += fromArgument(chat).trimmed();
        if (filter.chats.last().isEmpty())
            return usage(u"--chat needs a name, a phone number or an address."_s);
    }
    // Somebody who wants the photos of last year must not believe to have got them.
    if (!filter.isEmpty() && !Export::holdMessages(types))
        return usage(u"--since, --until and --chat apply to messages, but no type with messages "
                     "is selected."_s);
    return filter;
}

std::variant<Options, Failure> complete(const Raw &raw, Options options)
{
    options.backup = fromArgument(raw.backup);
    options.output = fromArgument(raw.output);
    options.passwordFile = fromArgument(raw.passwordFile);
    options.checkSpace = !raw.noSpaceCheck;
    if (options.backup.isEmpty())
        return usage(u"BACKUP is missing: specify the folder of the phone backup."_s);
    if (options.list && !options.output.isEmpty())
        return usage(u"--list exports nothing; omit OUTPUT."_s);
    if (!options.list && options.output.isEmpty())
        return usage(u"OUTPUT is missing: specify the folder for the exported files."_s);
    auto types = selectedTypes(raw);
    if (const auto *failure = std::get_if<Failure>(&types))
        return *failure;
    options.types = std::get<0>(types);
    const auto formats = formatsOf(raw, options.types);
    if (const auto *failure = std::get_if<Failure>(&formats))
        return *failure;
    options.formats = std::get<0>(formats);
    auto filter = messageFilter(raw, options.types);
    if (const auto *failure = std::get_if<Failure>(&filter))
        return *failure;
    options.messages = std::get<0>(filter);
    return options;
}

ExitCode refuse(const Failure &failure)
{
    Console console(false);
    say(console, failure);
    return exitCode(failure.status());
}

} // namespace

std::variant<Options, ExitCode> parseOptions(int argc, const char *const *argv)
{
    CLI::App app;
    Raw raw;
    Options options;
    describe(app, raw, options);
    const auto show = [](const std::string &text) {
        return Console(false).result(QByteArray::fromStdString(text)) ? ExitCode::Complete
                                                                      : ExitCode::Failed;
    };
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp &) {
        return show(app.help());
    } catch (const CLI::CallForVersion &version) {
        return show(std::string(version.what()) + '\n');
    } catch (const CLI::ParseError &fault) {
        return refuse(usage(QString::fromStdString(fault.what())));
    }
    auto result = complete(raw, std::move(options));
    if (const auto *failure = std::get_if<Failure>(&result))
        return refuse(*failure);
    return std::get<Options>(std::move(result));
}

} // namespace Cli
