#ifndef DATAEXPORT_MESSAGE_BUBBLE_P_H
#define DATAEXPORT_MESSAGE_BUBBLE_P_H

class QString;
class QTextStream;

//! The markup of one speech bubble, or of a picture beside the bubbles, on every kind of chat page.
struct Bubble
{
    bool fromMe = false;
    bool notDelivered = false;
    bool iMessage = false; //!< Chooses the colour of a sent bubble.
    bool deleted = false;
    bool broadcast = false; //!< Marks what was sent.
    bool hasAlt = false; //!< Says in words what its images are, as hardened pages do.

    //! Writes the whole bubble around \a text, with \a picture (a path) beside it unless that is
    //! empty.
    void write(QTextStream &out, const QString &text, const QString &picture) const;

    //! Writes the picture \a path with its marks, in a box without a table.
    void writePicture(QTextStream &out, const QString &path) const;

private:
    void openBox(QTextStream &out) const;
    void openTable(QTextStream &out) const;
    void closeTable(QTextStream &out) const;
    void writeNotDelivered(QTextStream &out) const;
    void writeReceivedDeleted(QTextStream &out) const;
    void endImage(QTextStream &out, const QString &words) const;
};

#endif
