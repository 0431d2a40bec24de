#include "OutcomeText.h"

#include "Console.h"
#include "Export/NewFile.h"
#include "Export/Outcome.h"
#include "Export/Text.h"
#include "Result.h"
#include "TextTable.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;
using Export::counted;
using Export::errorText;
using Export::grouped;
using Export::Outcome;
using Export::printable;
using Export::stateText;
using Export::TypeOutcome;

namespace Cli {

namespace {

constexpr qsizetype kFailuresSaid = 10;
constexpr int kLabelColumns = 13;

QString whereStopped(const TypeOutcome &type)
{
    const int tried = type.exported + type.failed;
    return tried == type.totals.items
        ? u"%1: %2"_s.arg(type.totals.name, stateText(type))
        : u"%1 after %2 of %3"_s.arg(
            type.totals.name, grouped(tried), counted(type.totals.items, u"item"_s, u"items"_s));
}

void sayWhatIsThere(Console &console, const QList<TypeOutcome> &types, const QString &output)
{
    QStringList complete;
    QStringList stopped;
    QStringList failed;
    QStringList notStarted;
    for (const TypeOutcome &type : types) {
        if (type.totals.items == 0)
            continue;
        switch (type.state) {
        case CIExportReport::End::Complete:
            complete += u"%1 (%2)"_s.arg(type.totals.name, grouped(type.exported));
            break;
        case CIExportReport::End::Stopped:
            stopped += whereStopped(type);
            break;
        case CIExportReport::End::Failed:
            failed += u"%1 (%2)"_s.arg(type.totals.name, stateText(type));
            break;
        case CIExportReport::End::NotStarted:
            notStarted += type.totals.name;
            break;
        }
    }
    const auto line = [&console](const QString &label, const QStringList &names) {
        if (!names.isEmpty())
            console.note(u"  "_s + label.leftJustified(kLabelColumns) + names.join(u", "_s));
    };
    line(u"Complete:"_s, complete);
    line(u"Stopped in:"_s, stopped);
    line(u"Failed:"_s, failed);
    line(u"Not started:"_s, notStarted);
    console.note(u"  No partial files are left in “%1”."_s.arg(output));
}

void sayFirstFailures(Console &console, const Outcome &outcome)
{
    console.warn(
        u"Some things could not be exported (%1 in total):"_s.arg(grouped(outcome.failureCount)));
    const qsizetype said = std::min(kFailuresSaid, outcome.failures.size());
    for (qsizetype i = 0; i < said; ++i) {
        const Export::RunReport::Failed &failed = outcome.failures.at(i);
        const QString item = failed.item.isEmpty() ? QString() : u'/' + failed.item;
        console.note(u"  %1%2: %3"_s.arg(failed.type, item, failed.reason));
    }
    if (outcome.failureCount > said)
        console.note(u"  … and %1 more"_s.arg(grouped(outcome.failureCount - said)));
}

void sayFailures(Console &console, const Outcome &outcome)
{
    if (outcome.failureCount > 0)
        sayFirstFailures(console, outcome);
    const qint64 notThere = Export::Sums(outcome.types).neverDownloaded;
    if (notThere > 0)
        console.say(Export::neverDownloadedSentence(notThere));
    const QString &list = outcome.reportPath;
    if (!list.isEmpty() && outcome.failureCount > 0)
        console.note(u"The full list is in “%1”."_s.arg(list));
    else if (!list.isEmpty())
        console.say(u"The full list is in “%1”."_s.arg(list));
    if (outcome.reportError != 0)
        console.error(u"The list export-report.csv could not be %1: %2."_s.arg(
            list.isEmpty() ? u"written"_s : u"completed"_s, errorText(outcome.reportError)));
}

} // namespace

void sayOutcome(Console &console, const Outcome &outcome)
{
    if (outcome.indexError != 0)
        console.error(u"index.html could not be written: %1."_s.arg(errorText(outcome.indexError)));
    if (outcome.failure) {
        say(console, *outcome.failure);
        sayWhatIsThere(console, outcome.types, outcome.output);
    }
    sayFailures(console, outcome);
    if (outcome.jpegCopies > 0)
        console.say(u"JPEG copies of HEIC pictures: %1"_s.arg(grouped(outcome.jpegCopies)));
    if (outcome.soundCopies > 0)
        console.say(u"Playable copies of recordings: %1"_s.arg(grouped(outcome.soundCopies)));
}

QByteArray summaryText(const Outcome &outcome)
{
    const bool early =
        std::any_of(outcome.types.begin(), outcome.types.end(), [](const TypeOutcome &type) {
            return type.state != CIExportReport::End::Complete;
        });
    const Export::Sums sums(outcome.types);
    const bool hasMissing = sums.missing > 0;
    const bool hasNeverDownloaded = sums.neverDownloaded > 0;
    QByteArray alignment = "lrr";
    QList<QStringList> rows { { u"Type"_s, u"Exported"_s, u"Failed"_s } };
    const auto addNumbers = [&](const QString &missing, const QString &neverDownloaded) {
        if (hasMissing)
            rows.last() += missing;
        if (hasNeverDownloaded)
            rows.last() += neverDownloaded;
    };
    addNumbers(u"Missing"_s, u"Never downloaded"_s);
    alignment += QByteArray(rows.last().size() - alignment.size(), 'r');
    if (early)
        rows.last() += u"State"_s;
    rows.last() += u"Where"_s;
    alignment += QByteArray(rows.last().size() - alignment.size(), 'l');
    for (const TypeOutcome &type : outcome.types) {
        if (type.isNothing())
            continue;
        rows += { type.totals.name, grouped(type.exported), grouped(type.failed) };
        addNumbers(grouped(type.missing), grouped(type.counts.neverDownloaded));
        if (early)
            rows.last() += stateText(type);
        rows.last() += type.folderIn(outcome.output);
    }
    rows += { u"Total"_s, grouped(sums.exported), grouped(sums.failed) };
    addNumbers(grouped(sums.missing), grouped(sums.neverDownloaded));
    QStringList lines = tableLines(rows, alignment.constData());
    for (const QString &absence : Export::absences(outcome.remarks))
        lines += printable(absence);
    if (!outcome.indexPath.isEmpty()) {
        const QString page = QDir(outcome.output).filePath(QFileInfo(outcome.indexPath).fileName());
        lines += u"To view everything, open “%1”."_s.arg(printable(page));
    }
    return lines.join(u'\n').toUtf8() + '\n';
}

} // namespace Cli
