#ifndef SAMPLE_CONTACTDATABASE_H
#define SAMPLE_CONTACTDATABASE_H

#include "sample/Database.h"

#include <QMap>
#include <QPair>

namespace Sample {

class BackupWriter;

//! One row of ABPerson; what is empty is NULL.
struct Card
{
    QString prefix, first, middle, last, suffix;
    QString firstSpoken, middleSpoken, lastSpoken;
    QString nickname, organization, department, jobTitle;
    QString birthday; //!< As stored: decimal seconds since 2001.
    QString note;
    bool isOrganization = false;
    int store = 0;
};

/*!
    \brief The phone's address book and the database of its pictures.

    \par Order
    Constructor, any additions, then finish(). Cards and values are numbered from 1 in the order in
    which they come.
*/
class ContactDatabase
{
public:
    // Kinds of values.
    static constexpr int kPhone = 3;
    static constexpr int kEmail = 4;
    static constexpr int kAddress = 5;
    static constexpr int kDate = 12;
    static constexpr int kInstantMessage = 13;
    static constexpr int kSound = 16;
    static constexpr int kUrl = 22;
    static constexpr int kRelatedName = 23;
    static constexpr int kSocialProfile = 46;

    // Formats of a part of a picture.
    static constexpr int kSmall = 0;
    static constexpr int kLargest = 5;

    //! Key and text of the parts of a value.
    using Parts = QList<QPair<QString, QString>>;

    explicit ContactDatabase(BackupWriter &writer);

    //! \return the number of the card.
    qint64 addCard(const Card &card);

    //! \a label: "Home" stands for the phone's own token, "=Boat" for the user's own text, an empty
    //! one for none. A date is given as it is stored.
    void addValue(qint64 card, int kind, const QString &label, const QString &value);
    void addParts(qint64 card, int kind, const QString &label, const Parts &parts);

    //! Shows \a cards as one, with the name and picture of the given ones.
    void link(const QList<qint64> &cards, qint64 nameCard, qint64 imageCard);

    void addGroup(const QString &name, const QList<qint64> &cards);

    //! The picture of a card, empty when the phone keeps parts of it only, and those by their
    //! format: kSmall, kLargest.
    void addPhoto(qint64 card, const QByteArray &whole, const QMap<int, QByteArray> &parts);

    //! Closes both; a failure is the writer's.
    void finish();

private:
    qint64 number(QMap<QString, qint64> &known, Statement &insert, const QString &text);
    qint64 insertValue(qint64 card, int kind, const QString &label, const QVariant &value);

    BackupWriter &m_writer;
    Database m_book;
    Database m_images;
    Statement m_insertCard;
    Statement m_insertValue;
    Statement m_insertLabel;
    Statement m_insertKey;
    Statement m_insertPart;
    Statement m_insertWhole;
    Statement m_insertThumbnail;
    QMap<QString, qint64> m_labels;
    QMap<QString, qint64> m_keys;
    QMap<QPair<qint64, int>, int> m_places; //!< Values of each kind of each card.
    qint64 m_cards = 0;
    qint64 m_values = 0;
    qint64 m_links = 0;
    qint64 m_groups = 0;
};

} // namespace Sample

#endif
