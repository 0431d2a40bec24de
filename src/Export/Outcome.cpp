#include "Export/Outcome.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace Export {

namespace {

using Output = CIExportReport::Output;
using End = CIExportReport::End;

bool hasEnded(const TypeOutcome &type, End end)
{
    return std::any_of(type.counts.outputs.begin(),
                       type.counts.outputs.end(),
                       [end](const auto &output) { return output.end == end; });
}

End stateOf(const TypeOutcome &type)
{
    if (type.totals.items == 0)
        return End::Complete;
    if (!type.counts.started)
        return End::NotStarted;
    if (hasEnded(type, End::Stopped))
        return End::Stopped;
    if (hasEnded(type, End::Failed))
        return End::Failed;
    // A stop between two outputs.
    return type.counts.outputs.isEmpty() || hasEnded(type, End::NotStarted) ? End::Stopped
                                                                            : End::Complete;
}

} // namespace

QString TypeOutcome::folderIn(const QString &output) const
{
    const bool hasOutput =
        std::any_of(counts.outputs.begin(), counts.outputs.end(), [](const auto &ended) {
            return ended.output != Output::Copies && ended.end == End::Complete;
        });
    if (isInArchiveOnly || (exported == 0 && !hasOutput))
        return {};
    return (output.endsWith(u'/') ? output : output + u'/') + totals.name;
}

bool Outcome::isNothing() const
{
    return failureCount == 0
        && std::all_of(types.begin(), types.end(), [](const TypeOutcome &type) {
               return type.isNothing();
           });
}

Sums::Sums(const QList<TypeOutcome> &types)
{
    for (const TypeOutcome &type : types) {
        exported += type.exported;
        failed += type.failed;
        missing += type.missing;
        neverDownloaded += type.counts.neverDownloaded;
    }
}

QString outputName(Output output)
{
    switch (output) {
    case Output::Page:
        return u"page"_s;
    case Output::Table:
        return u"CSV"_s;
    case Output::Cards:
        return u"vCards"_s;
    case Output::Copies:
        return u"copies"_s;
    }
    return {};
}

QString stateWord(End state)
{
    switch (state) {
    case End::Complete:
        return u"complete"_s;
    case End::Stopped:
        return u"stopped"_s;
    case End::NotStarted:
        return u"not started"_s;
    case End::Failed:
        return u"failed"_s;
    }
    return {};
}

QString stateText(const TypeOutcome &type)
{
    QStringList concerned;
    for (const RunReport::OutputEnd &output : type.counts.outputs) {
        if (output.end != End::Complete)
            concerned += outputName(output.output);
    }
    const QString word = stateWord(type.state);
    return concerned.isEmpty() || concerned.size() == type.counts.outputs.size()
        ? word
        : u"%1 (%2)"_s.arg(word, concerned.join(u", "_s));
}

TypeOutcome typeOutcome(const TypeTotals &totals, const RunReport &report, const Formats &formats)
{
    TypeOutcome type { totals, report.counts(totals.code) };
    const RunReport::Counts &counts = type.counts;
    if (!formats.areOf(totals.code)) { // the archive alone has them
        type.state = End::Complete;
        type.isInArchiveOnly = true;
        type.exported = totals.items;
        type.missing = counts.unreadable;
        return type;
    }
    type.state = stateOf(type);
    // The first output tells of the items. A page that did not come to its end is not there.
    const bool isPage = totals.isPage();
    const bool hasFirst = !counts.outputs.isEmpty() && counts.outputs.first().end == End::Complete;
    const bool isCounted = !isPage || formats.page; // tables and cards count nothing
    type.exported = isPage && !hasFirst ? 0 : isCounted ? counts.exported : totals.items;
    const int others = std::max(totals.items - type.exported, 0);
    if (hasFirst || type.state == End::Failed)
        type.failed = others;
    else
        type.failed = isPage ? 0 : std::min(counts.faults, others);
    type.missing = counts.unreadable + std::max(counts.faults - type.failed, 0);
    return type;
}

} // namespace Export
