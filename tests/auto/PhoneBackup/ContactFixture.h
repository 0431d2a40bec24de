#ifndef TESTS_PHONEBACKUP_CONTACTFIXTURE_H
#define TESTS_PHONEBACKUP_CONTACTFIXTURE_H

#include "BackupFixture.h"
#include "contact/BkContactItem.h"
#include "contact/BkContactPrivate.h"
#include "contact/BkContactProperty.h"

//! A backup with an address book, and what the reader makes of it as lines of text.
class ContactFixture : public BackupFixture
{
public:
    static constexpr int kContacts = 8;

    //! The tables of a newer release, as far as they are read, filled by \a rows.
    static QByteArray book(const QByteArray &rows)
    {
        return database(
            ("CREATE TABLE ABPerson (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, First TEXT, Last "
             "TEXT,"
             " Middle TEXT, FirstPhonetic TEXT, MiddlePhonetic TEXT, LastPhonetic TEXT,"
             " Organization TEXT, Department TEXT, Note TEXT, Kind INTEGER, Birthday TEXT, JobTitle"
             " TEXT, Nickname TEXT, Prefix TEXT, Suffix TEXT, CompositeNameFallback TEXT,"
             " DisplayName TEXT, LastSort TEXT, LastSortSection TEXT, LastSortLanguageIndex INTEGER"
             " DEFAULT 2147483647, PersonLink INTEGER DEFAULT -1, IsPreferredName INTEGER DEFAULT "
             "1);"
             "CREATE TABLE ABMultiValue (UID INTEGER PRIMARY KEY, record_id INTEGER, property"
             " INTEGER, identifier INTEGER, label INTEGER, value TEXT);"
             "CREATE TABLE ABMultiValueLabel (value TEXT, UNIQUE(value));"
             "CREATE TABLE ABMultiValueEntry (parent_id INTEGER, key INTEGER, value TEXT,"
             " UNIQUE(parent_id, key));"
             "CREATE TABLE ABMultiValueEntryKey (value TEXT, UNIQUE(value));"
             "CREATE TABLE ABPersonLink (ROWID INTEGER PRIMARY KEY AUTOINCREMENT,"
             " PreferredImagePersonID INTEGER DEFAULT -1, PreferredNamePersonID INTEGER DEFAULT "
             "-1);"
             + rows)
                .constData());
    }

    //! The pictures' tables, filled by \a rows.
    static QByteArray images(const QByteArray &rows)
    {
        return database(("CREATE TABLE ABThumbnailImage (ROWID INTEGER PRIMARY KEY, record_id"
                         " INTEGER, format INTEGER, derived_from_format INTEGER, data BLOB);"
                         "CREATE TABLE ABFullSizeImage (ROWID INTEGER PRIMARY KEY, record_id"
                         " INTEGER, crop_x INTEGER, crop_y INTEGER, crop_width INTEGER, data BLOB);"
                         + rows)
                            .constData());
    }

    void addBook(const QByteArray &image)
    {
        addFile(QStringLiteral("AddressBook.sqlitedb"), image);
    }

    void addImages(const QByteArray &image)
    {
        addFile(QStringLiteral("AddressBookImages.sqlitedb"), image);
    }

    void addFile(const QString &name, const QByteArray &content)
    {
        writer.addFile(
            QStringLiteral("HomeDomain"), QStringLiteral("Library/AddressBook/") + name, content);
    }

    BkData *set()
    {
        if (!m_opened)
            m_opened = open();
        return m_opened ? m_opened->getBkData(kContacts) : nullptr;
    }

    BkContactItem *item(int index)
    {
        return set() ? dynamic_cast<BkContactItem *>(set()->at(index, true)) : nullptr;
    }

    QStringList names()
    {
        QStringList lines;
        const QList<int> indices = set() ? set()->recoverList() : QList<int>();
        for (const int index : indices)
            lines.append(set()->at(index, true)->value(0));
        return lines;
    }

    //! What is known of a contact: "field: text", "kind label: value", "kind label: key=part …".
    QStringList details(int index = 0)
    {
        BkContactItem *contact = item(index);
        return lines(contact ? contact->detailContent() : nullptr);
    }

    static QStringList lines(const BkContactPrivate *about)
    {
        if (!about)
            return { QStringLiteral("not read") };
        QStringList lines;
        const auto add = [&lines](const char *field, const QString &text) {
            if (!text.isEmpty())
                lines.append(QLatin1String(field) + QLatin1String(": ") + text);
        };
        add("prefix", about->namePrefix());
        add("given", about->givenName());
        add("additional", about->additionalName());
        add("family", about->familyName());
        add("suffix", about->nameSuffix());
        add("given yomi", about->givenNameYomi());
        add("family yomi", about->familyNameYomi());
        add("nickname", about->nickname());
        add("title", about->jobTitle());
        add("department", about->department());
        add("organization", about->organization());
        add("birthday", about->birthday());
        add("notes", about->notes());
        for (const BkContactProperty *property : about->properties()) {
            QString line = QString::number(property->propType()) + QLatin1Char(' ')
                + property->propLabel() + QLatin1Char(':');
            const QMap<QString, QString> parts = property->propValueEntry();
            for (auto part = parts.cbegin(); part != parts.cend(); ++part)
                line += QLatin1Char(' ') + part.key() + QLatin1Char('=') + part.value();
            if (!property->propValue().isEmpty())
                line += QLatin1Char(' ') + property->propValue();
            lines.append(line);
        }
        return lines;
    }

private:
    PhoneItems::Backup *m_opened = nullptr;
};

#endif
