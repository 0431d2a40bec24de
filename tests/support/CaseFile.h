#ifndef TESTS_SUPPORT_CASEFILE_H
#define TESTS_SUPPORT_CASEFILE_H

#include "PhoneBackup/source/Source.h"
#include "PhoneItems/Backup.h"
#include "sample/BackupWriter.h"
#include "sample/Database.h"
#include "sample/PropertyList.h"
#include "support/Golden.h"

#include <QDirIterator>
#include <QJsonDocument>
#include <QTemporaryDir>

#include <algorithm>
#include <functional>

/*!
    \brief Cases of a reader as files: what the backup holds, and what comes of it.

    tests/cases/<room>/<what>.case holds cases, each under a line "=== NAME"; what precedes the
   first of these lines belongs to all of them. A file without such a line is one case. Sections,
   each of which begins with a line:

        --- sql [OPTION …] DOMAIN/PATH    a database that these statements make, behind the shared
                                          ones of the same place
        --- plist [OPTION …] DOMAIN/PATH  a binary property list of this JSON
        --- hex [OPTION …] DOMAIN/PATH    these bytes; blanks and line ends are skipped
        --- text [OPTION …] DOMAIN/PATH   this text, without the line ends behind it
        --- encrypted                     the backup is
        --- records KIND                  what is read, as JSON, a record a line
        --- items TYPE [WHAT]             what the item model makes of it, a line each
        --- problems [items]              what could not be read, or the item model of it:
                                          "code place", " (loss)" and " (never downloaded)"
                                          behind some

    What precedes the first section says what the case is about. Options: "wal" leaves what a
    database holds in its write-ahead log; "cut=N" keeps N percent of the bytes; "zero=AT+COUNT"
   makes zeros of these bytes; "modified=SECONDS" (since 1970) is the date of the file.
   UPDATE_GOLDEN=1 writes records, items and problems anew.
*/
class CaseFile
{
public:
    using ReadRecords = std::function<QByteArrayList(PhoneBackup::Source &, const QString &kind)>;
    using ReadItems = std::function<QStringList(PhoneItems::Backup &, const QString &what)>;

    //! Adds a row for each case, with the column "path".
    static void addRows()
    {
        QTest::addColumn<QString>("path");
        const QDir folder(QStringLiteral(TEST_SOURCE_DIR "/cases"));
        QStringList paths;
        QDirIterator files(
            folder.path(), { QStringLiteral("*.case") }, QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext())
            paths.append(files.next());
        paths.sort();
        if (paths.isEmpty())
            qFatal("There are no cases in %s", qPrintable(folder.path()));
        for (const QString &path : paths) {
            const QList<Case> cases = casesOf(Files::read(path));
            for (qsizetype i = cases.size() > 1 ? 1 : 0; i < cases.size(); ++i) {
                QByteArray row = folder.relativeFilePath(path).chopped(5).toUtf8();
                if (i > 0)
                    row += ": " + cases[i].head.mid(4).trimmed();
                QTest::newRow(row.constData()) << path + QLatin1Char('#') + QString::number(i);
            }
        }
    }

    /*!
        Makes the backup of the case \a path, and holds against it what \a readRecords and \a
       readItems yield for each WHAT. \return what differs, empty when nothing does.
    */
    static QByteArray
    difference(const QString &path, const ReadRecords &readRecords, const ReadItems &readItems)
    {
        const QString file = path.section(QLatin1Char('#'), 0, -2);
        const QByteArray expected = Files::read(file);
        QList<Case> cases = casesOf(expected);
        Case &wanted = cases[path.section(QLatin1Char('#'), -1).toInt()];
        QTemporaryDir folder;
        const QString root = folder.filePath(QStringLiteral("backup"));
        Sample::BackupWriter writer(root);
        PhoneBackup::Password password;
        if (has(wanted, "encrypted")) {
            Sample::Encryption::Settings settings;
            settings.password = QStringLiteral("secret");
            settings.iterations = 10;
            writer.setEncryption(settings);
            password.text = PhoneBackup::Secret(settings.password.toUtf8());
        }
        for (const Section &section : inputs(cases.first(), wanted))
            section.addTo(writer);
        if (!writer.finish())
            return writer.error().toUtf8();
        auto files = PhoneBackup::BackupFiles::open(root, {}, password);
        auto backup = PhoneItems::Backup::open(root, {}, password);
        if (!files || !backup)
            return "the backup cannot be opened";
        PhoneBackup::Source source(files.take(), {});
        for (Section &section : wanted.sections) {
            if (section.kind == "records")
                section.body = lines(readRecords(source, section.place));
            else if (section.kind == "items")
                section.body = lines(readItems(*backup.value(), section.place));
            else if (section.kind == "problems")
                section.body =
                    lines(section.place == QLatin1String("items") ? backup.value()->problems()
                                                                  : source.problems());
        }
        QByteArray actual;
        for (const Case &one : cases) {
            actual += one.head;
            for (const Section &section : one.sections)
                actual += section.head + section.body;
            if (&one != &cases.last() && !actual.isEmpty() && !actual.endsWith("\n\n"))
                actual += '\n';
        }
        if (Golden::isUpdating() && actual != expected)
            Files::write(file, actual);
        return Golden::difference(actual, expected);
    }

private:
    struct Section
    {
        QByteArray head; // its first line, or what precedes all of them
        QByteArray kind;
        QList<QByteArray> options;
        QString place;
        QByteArray body;

        bool isResult() const { return kind == "records" || kind == "items" || kind == "problems"; }

        QByteArray option(const QByteArray &name) const
        {
            for (const QByteArray &option : options) {
                if (option.startsWith(name + '='))
                    return option.mid(name.size() + 1);
            }
            return {};
        }

        QByteArray content() const
        {
            if (kind == "sql")
                return Sample::Database({}, body.constData()).image();
            if (kind == "plist")
                return Sample::binaryPropertyList(QJsonDocument::fromJson(body).toVariant());
            if (kind == "hex")
                return QByteArray::fromHex(body);
            qsizetype size = body.size();
            while (size > 0 && body[size - 1] == '\n')
                --size;
            return body.first(size);
        }

        void addTo(Sample::BackupWriter &writer) const
        {
            const qsizetype slash = place.indexOf(QLatin1Char('/'));
            if (kind.isEmpty() || slash < 0)
                return;
            const QString domain = place.left(slash);
            const QString path = place.mid(slash + 1);
            Sample::FileTraits traits;
            if (const QByteArray seconds = option("modified"); !seconds.isEmpty())
                traits.modified = QDateTime::fromSecsSinceEpoch(seconds.toLongLong(), Qt::UTC);
            QByteArray whole = content();
            if (options.contains("wal")) {
                const QByteArray before = Sample::Database({}, "CREATE TABLE unused (a)").image();
                Sample::Database after({}, "CREATE TABLE unused (a)");
                after.execute(body.constData());
                writer.addFile(domain,
                               path + QStringLiteral("-wal"),
                               Sample::writeAheadLog(before, after.image()),
                               traits);
                whole = before;
            }
            if (const QByteArray percent = option("cut"); !percent.isEmpty())
                whole.truncate(whole.size() * percent.toInt() / 100);
            if (const QList<QByteArray> range = option("zero").split('+'); range.size() == 2) {
                const QByteArray zeros(range[1].toInt(), '\0');
                whole.replace(range[0].toInt(), zeros.size(), zeros);
            }
            writer.addFile(domain, path, whole, traits);
        }
    };

    struct Case
    {
        QByteArray head; // the line with its name; empty for what is shared
        QList<Section> sections;
    };

    static QList<Case> casesOf(const QByteArray &file)
    {
        QList<Case> cases;
        qsizetype at = 0;
        do {
            const bool isFirst = cases.isEmpty() && !file.startsWith("=== ");
            const qsizetype behindName = isFirst ? at : file.indexOf('\n', at) + 1;
            const qsizetype next = file.indexOf("\n=== ", at);
            const qsizetype end = next < 0 ? file.size() : next + 1;
            if (cases.isEmpty() && !isFirst)
                cases.append(Case {});
            cases.append(
                { file.mid(at, behindName - at), split(file.mid(behindName, end - behindName)) });
            at = end;
        } while (at < file.size());
        return cases;
    }

    static bool has(const Case &one, const QByteArray &kind)
    {
        return std::any_of(one.sections.begin(), one.sections.end(), [&](const Section &section) {
            return section.kind == kind;
        });
    }

    // What the backup holds: the shared files and those of the case.
    static QList<Section> inputs(const Case &shared, const Case &wanted)
    {
        QList<Section> all;
        for (const Case *one : { &shared, &wanted }) {
            for (const Section &section : one->sections) {
                const auto same = std::find_if(all.begin(), all.end(), [&](const Section &other) {
                    return other.place == section.place;
                });
                if (section.isResult() || section.kind.isEmpty())
                    continue;
                if (same == all.end()) {
                    all.append(section);
                } else {
                    same->body += section.body;
                    same->options += section.options;
                }
            }
            if (&shared == &wanted)
                break;
        }
        return all;
    }

    static QList<Section> split(const QByteArray &file)
    {
        QList<Section> sections { Section {} };
        for (qsizetype at = 0; at < file.size();) {
            const qsizetype end = file.indexOf('\n', at);
            const QByteArray line = file.mid(at, end < 0 ? -1 : end - at + 1);
            at += line.size();
            if (!line.startsWith("--- ")) {
                sections.back().body += line;
                continue;
            }
            Section section;
            section.head = line;
            QList<QByteArray> words = line.trimmed().mid(4).split(' ');
            section.kind = words.takeFirst();
            while (!words.isEmpty() && (words.first() == "wal" || words.first().contains('=')))
                section.options.append(words.takeFirst());
            section.place = QString::fromUtf8(words.join(' '));
            sections.append(section);
        }
        return sections;
    }

    static QByteArray lines(const QStringList &items)
    {
        QByteArray all;
        for (const QString &item : items)
            all += QString(item).replace(QLatin1Char('\n'), QLatin1String("\\n")).toUtf8() + '\n';
        return all;
    }

    static QByteArray lines(const QByteArrayList &records)
    {
        QByteArray all;
        for (const QByteArray &record : records)
            all += record + '\n';
        return all;
    }

    static QByteArray lines(const QList<PhoneBackup::Problem> &problems)
    {
        QByteArray all;
        for (const PhoneBackup::Problem &problem : problems) {
            all += QByteArray::number(problem.dataType) + ' ' + problem.source.toUtf8()
                + (problem.loss ? " (loss)" : "")
                + (problem.neverDownloaded ? " (never downloaded)\n" : "\n");
        }
        return all;
    }
};

#endif
