#ifndef DATAEXPORT_CONTACT_CONTACTCARD_P_H
#define DATAEXPORT_CONTACT_CONTACTCARD_P_H

#include "contact/CContactHelper.h"

#include <QList>
#include <QMap>
#include <QString>

class BkContactItem;
class BkContactPrivate;
class BkContactProperty;
class CIDataExporter;

//! Composes the mark-up of one contact on the page.
class ContactCard
{
public:
    //! The file of the picture of those who have none.
    static constexpr QLatin1String kSilhouette { "default_contact.png" };

    //! \a page tells whether text is to be encoded; \a picture is a path relative to it.
    ContactCard(const CIDataExporter &page,
                const BkContactItem &item,
                const BkContactPrivate &contact,
                const QString &picture);

    QString write();

    //! Properties that have no group on the page and should have.
    int unknownCount() const { return m_unknownCount; }

private:
    enum class Row { Heading, Inner, Last };

    void sortProperties();
    void writeHead();
    void writeGroup(int type);
    void writeBirthday();
    void writeHeading(const QString &label);
    void writeRow(Row kind, const QString &label, const QString &value);
    void openRow(Row kind);

    const CIDataExporter &m_page;
    const BkContactItem &m_item;
    const BkContactPrivate &m_contact;
    const QString m_picture;
    const bool m_deleted;
    CContactHelper m_helper;
    QMap<int, QList<const BkContactProperty *>> m_groups;
    int m_unknownCount = 0;
    QString m_card;
};

#endif
