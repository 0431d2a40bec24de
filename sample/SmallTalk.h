#ifndef SAMPLE_SMALLTALK_H
#define SAMPLE_SMALLTALK_H

#include <QString>
#include <QStringView>

namespace Sample {

class Random;

//! A line of a conversation between two people.
struct SpokenLine
{
    bool first = true; //!< Said by the one who begins.
    QString text;
};

/*!
    \brief A few lines between two people, with places, days and things filled in anew each time.

    begin(), then next() until it has no more.
*/
class SmallTalk
{
public:
    explicit SmallTalk(Random &random);

    //! Begins another exchange.
    void begin();
    //! Puts the next line into \a line. \return false at the end of the exchange.
    bool next(SpokenLine &line);

private:
    QString filled(QStringView pattern);

    Random &m_random;
    QStringView m_rest;
};

} // namespace Sample

#endif
