#ifndef DATAEXPORT_BACKUP_BKDATATYPE_H
#define DATAEXPORT_BACKUP_BKDATATYPE_H

#include "DataExport_global.h"
#include "export/CIExportReport.h"

#include <QList>
#include <QString>

/*!
    \brief The data types: their codes, which the item model answers and is asked for, and what there
    is to know of each.

    The codes are those of BkBackup::getBkData() and BkData::dataType().
*/
struct DATAEXPORT_EXPORT BkDataType
{
    //! The codes, which never change.
    enum Code : int {
        Photos = 0,
        Videos = 1,
        SharedAlbums = 2,
        VoiceMemos = 3,
        Books = 4,
        Music = 5, //!< Ringtones and songs.
        Messages = 6,
        MessageAttachments = 7,
        Contacts = 8,
        Notes = 9,
        AppDocuments = 10,
        Whatsapp = 11,
        WhatsappAttachments = 12,
        Reminders = 13,
        Calendar = 14,
        Calls = 15,
        Voicemail = 16,
        Safari = 17,
        NoteAttachments = 18,
    };

    //! How a data type is written, and so which classes its items are of.
    enum class Form {
        Files, //!< Copies; BkFileItem.
        Contacts, //!< A page, a table and cards; BkContactItem.
        Messages, //!< A page and a table of conversations; BkSMSItem.
        Whatsapp, //!< Likewise; BkWhatsappItem.
        Table, //!< A page with the columns of BkData::columnName().
        Bookmarks, //!< A page of links; BkSafariBookmarkItem.
    };

    Code code; //!< What it is known by in the item model.
    Form form; //!< How it is written.
    const char
        *word; //!< For command lines and machine-readable results, never translated: "photos".
    const char *name; //!< In English, as it was marked for translation.
    const char *longWord = nullptr; //!< What a person may try in place of the word; null for none.

    //! What it is written as, in this order.
    QList<CIExportReport::Output> outputs() const;

    //! Whether it is written as a page, and not as copies of files.
    bool isPage() const { return form != Form::Files; }

    //! Whether its items are conversations that hold messages.
    bool hasMessages() const { return form == Form::Messages || form == Form::Whatsapp; }

    //! The name in the user's language, which is that of the folder in an output.
    QString displayName() const;

    //! All data types, in the order in which they are exported.
    static const QList<BkDataType> &all();

    //! The data type with this code; null when there is none.
    static const BkDataType *find(int code);
};

#endif
