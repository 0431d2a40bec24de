#ifndef TESTS_SUPPORT_CASEFILE_H
#define TESTS_SUPPORT_CASEFILE_H

#include "PhoneBackup/source/Source.h"
#include "sample/BackupWriter.h"
#include "sample/Database.h"
#include "sample/PropertyList.h"
#include "support/Golden.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <functional>

/*!
    \brief A reader's case as a file: what the backup holds, and the records that come of it.

    tests/cases/<room>/<what>.case is made of sections, each of which begins with a line:

        --- sql [OPTION …] DOMAIN/PATH    a database that these statements make
        --- plist [OPTION …] DOMAIN/PATH  a binary property list of this JSON
        --- hex [OPTION …] DOMAIN/PATH    these bytes; blanks and line ends are skipped
        --- text [OPTION …] DOMAIN/PATH   this text
        --- records [WHAT]                what is read, as JSON, a record a line
        --- problems                      what could not be read: "code place", " (loss)" behind
   some

    What precedes the first section says what the case is about. Options: "wal" leaves what a
    database holds in its write-ahead log; "cut=N" keeps N percent of the bytes;
    "modified=SECONDS" (since 1970) is the date of the file. Fields that are empty are left out of
    records. UPDATE_GOLDEN=1 writes records and problems anew.
*/
class CaseFile
{
public:
    using Records = QList<QJsonObject>;

    //! Adds a row for each case of \a room, with the column "path".
    static void addRows(const QString &room)
    {
        QTest::addColumn<QString>("path");
        const QDir folder(QStringLiteral(TEST_SOURCE_DIR "/cases/") + room);
        const QStringList names = folder.entryList({ QStringLiteral("*.case") });
        if (names.isEmpty())
            qFatal("There are no cases in %s", qPrintable(folder.path()));
        for (const QString &name : names)
            QTest::newRow(qPrintable(name.chopped(5))) << folder.filePath(name);
    }

    /*!
        Makes the backup of the case \a path, and holds against it what \a read yields for each
       WHAT. \return what differs, empty when nothing does.
    */
    static QByteArray
    difference(const QString &path,
               const std::function<Records(PhoneBackup::Source &, const QString &what)> &read)
    {
        const QByteArray expected = Files::read(path);
        QTemporaryDir folder;
        const QString root = folder.filePath(QStringLiteral("backup"));
        Sample::BackupWriter writer(root);
        QList<Section> sections = split(expected);
        for (const Section &section : sections) {
            if (!section.isResult())
                section.addTo(writer);
        }
        if (!writer.finish())
            return writer.error().toUtf8();
        auto files = PhoneBackup::BackupFiles::open(root, {});
        if (!files)
            return "the backup cannot be opened";
        PhoneBackup::Source source(files.take(), {});
        QByteArray actual;
        for (Section &section : sections) {
            if (section.kind == "records")
                section.body = lines(read(source, section.place));
            else if (section.kind == "problems")
                section.body = lines(source.problems());
            actual += section.head + section.body;
        }
        if (Golden::isUpdating() && actual != expected)
            Files::write(path, actual);
        return Golden::difference(actual, expected);
    }

    //! \a fields without those that are empty: null, "", false, an invalid date, no elements.
    static QJsonObject filled(const QJsonObject &fields)
    {
        QJsonObject kept;
        for (auto field = fields.begin(); field != fields.end(); ++field) {
            const QJsonValue value = field.value();
            const bool isEmpty = value.isNull() || (value.isString() && value.toString().isEmpty())
                || (value.isBool() && !value.toBool())
                || (value.isArray() && value.toArray().isEmpty())
                || (value.isObject() && value.toObject().isEmpty());
            if (!isEmpty)
                kept.insert(field.key(), value);
        }
        return kept;
    }

    //! \a date in UTC with milliseconds.
    static QString text(const QDateTime &date) { return date.toUTC().toString(Qt::ISODateWithMs); }

private:
    struct Section
    {
        QByteArray head; // its first line, or what precedes all of them
        QByteArray kind;
        QList<QByteArray> options;
        QString place;
        QByteArray body;

        bool isResult() const { return kind == "records" || kind == "problems"; }

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
            return kind == "hex" ? QByteArray::fromHex(body) : body;
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
            writer.addFile(domain, path, whole, traits);
        }
    };

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

    static QByteArray lines(const Records &records)
    {
        QByteArray all;
        for (const QJsonObject &record : records)
            all += QJsonDocument(record).toJson(QJsonDocument::Compact) + '\n';
        return all;
    }

    static QByteArray lines(const QList<PhoneBackup::Problem> &problems)
    {
        QByteArray all;
        for (const PhoneBackup::Problem &problem : problems) {
            all += QByteArray::number(problem.dataType) + ' ' + problem.source.toUtf8()
                + (problem.loss ? " (loss)\n" : "\n");
        }
        return all;
    }
};

#endif
