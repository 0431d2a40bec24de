#ifndef PHONEBACKUP_SOURCE_CALL_H
#define PHONEBACKUP_SOURCE_CALL_H

#include <QDateTime>
#include <QString>
#include <QStringList>

#include <optional>

namespace PhoneBackup {

//! A call, from the phone's own history or from the log of an app.
struct Call
{
    enum class Direction { Unknown, Incoming, Outgoing };

    enum class Kind {
        Unknown,
        Telephone,
        FaceTime,
        App, //!< Of somebody else; see app.
    };

    qint64 row = 0; //!< Number of its row in its store.
    QString id; //!< The same in every backup; empty in old stores and in logs of apps.
    QDateTime date; //!< When it began, UTC; may be invalid.
    std::optional<double> seconds; //!< How long it lasted.
    Direction direction = Direction::Unknown;
    Kind kind = Kind::Unknown;
    bool isMissed = false; //!< It came in, and was not answered.
    bool isVideo = false; //!< Apps tell it in their own logs only.
    bool isSeen = false; //!< The owner has seen it in the list of calls.
    bool isOfLog = false; //!< From the log of an app, and with names as that app has them.
    QString app; //!< Identifier of the app or service, "com.apple.Telephony"; empty in old stores.
    QStringList addresses; //!< Of the others: numbers and e-mail addresses; none when withheld.
    //! Of the others, as the network or the app gave them. Of a log, an empty text for a person of
    //! whom nothing is known, and no names at all where there are numbers alone.
    QStringList names;
    QString group; //!< Name of the group that was called; empty for none.
    QString place; //!< Where the number belongs, as the phone tells it.
    QString country; //!< Two letters, as in ISO 3166, in small ones; that of the network.
};

} // namespace PhoneBackup

#endif
