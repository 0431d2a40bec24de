#ifndef PHONEBACKUP_WHATSAPP_WHATSAPPCALLS_H
#define PHONEBACKUP_WHATSAPP_WHATSAPPCALLS_H

#include <QDateTime>
#include <QStringList>

#include <optional>
#include <vector>

namespace PhoneBackup {

class Source;

//! A call that was made with WhatsApp.
struct WhatsappCall
{
    enum class Direction { Unknown, Incoming, Outgoing };

    qint64 row = 0;
    QDateTime date; //!< UTC; may be invalid.
    std::optional<double> seconds; //!< How long it lasted.
    Direction direction = Direction::Unknown;
    bool isMissed = false;
    bool isVideo = false;
    //! Of the others, the number where there is no name, an empty text where nothing is known; no
    //! names at all when there are numbers alone.
    QStringList names;
    QStringList numbers; //!< Of the others, those that are known.
    QString group; //!< Name of the group that was called.
    QString app; //!< Identifier of the app or of its business edition.
};

/*!
    The calls in the logs of WhatsApp and of its business edition, in no order; the phone's owner is
    not among the others. What cannot be read is a loss of \a dataType: \a source is told.
*/
std::vector<WhatsappCall> readWhatsappCalls(Source &source, int dataType);

} // namespace PhoneBackup

#endif
