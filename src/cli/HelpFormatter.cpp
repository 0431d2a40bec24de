#include "HelpFormatter.h"

#include "TypeNames.h"

using namespace Qt::StringLiterals;

namespace Cli {

namespace {

constexpr std::size_t kOptionColumn = 24;
constexpr qsizetype kTextColumns = 78;

QString wrapped(const QStringList &words)
{
    QString text;
    QString line = u"  "_s;
    for (qsizetype i = 0; i < words.size(); ++i) {
        const QString word = words.at(i) + (i + 1 < words.size() ? u", "_s : u""_s);
        if (line.size() + word.size() > kTextColumns) {
            text += line.trimmed().prepend(u"  "_s) + u'\n';
            line = u"  "_s;
        }
        line += word;
    }
    return text + line;
}

} // namespace

HelpFormatter::HelpFormatter()
{
    column_width(kOptionColumn);
}

std::string HelpFormatter::make_usage(const CLI::App * /*app*/, std::string name) const
{
    return "\nUsage: " + name + " [options] BACKUP OUTPUT\n       " + name
        + " [options] --list BACKUP\n\n";
}

std::string HelpFormatter::make_positionals(const CLI::App *app) const
{
    std::string text;
    for (const CLI::Option *option :
         app->get_options([](const CLI::Option *o) { return o->get_positional(); }))
        text += make_option(option, true);
    return text + '\n';
}

std::string HelpFormatter::make_group(std::string group,
                                      bool isPositional,
                                      std::vector<const CLI::Option *> options) const
{
    std::string text = group + ":\n";
    for (const CLI::Option *option : options)
        text += make_option(option, isPositional);
    return text;
}

std::string HelpFormatter::make_option_opts(const CLI::Option *option) const
{
    const std::string &text = option->get_option_text();
    return text.empty() ? text : ' ' + text;
}

QString helpFooter()
{
    return u"Types:\n"_s + wrapped(TypeNames::words()) + uR"(

Examples:
  dataexport --list ~/Backups
  dataexport ~/Backups/00008030-001A2D3C4E5F802E ~/phone
  dataexport --formats archive ~/Backups ~/phone
  dataexport --only photos,videos ~/Backups /media/disk/pictures
  dataexport --only messages --chat "Anna" --since 2023-06-01 ~/Backups ~/anna
  dataexport --password-file ~/.backup-password ~/Backups ~/phone
  dataexport --json --quiet ~/Backups ~/phone > summary.json

Exit codes:
    0  complete
    1  failed
    2  usage error: unknown option, OUTPUT not empty, several backups found
    3  finished, but some items could not be exported: see export-report.csv
   10  no backup found, or it cannot be read
   11  password of an encrypted backup missing or wrong
   12  OUTPUT cannot be written, or TMPDIR cannot be used
  130  stopped with Ctrl-C)"_s;
}

} // namespace Cli
