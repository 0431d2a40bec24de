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

    //! Opens the box on the side of its sender, with the mark of a deleted message that was sent.
    void openBox(QTextStream &out) const;

    //! Opens the nine-part table, up to the middle row's left edge; the middle cell follows.
    void openTable(QTextStream &out) const;

    //! Ends the table behind its middle cell, and the box.
    void closeTable(QTextStream &out) const;

    //! Writes the picture \a path with its marks, and ends the box, which holds no table then.
    void writePicture(QTextStream &out, const QString &path) const;
};

#endif
