#ifndef SAMPLE_PEOPLE_H
#define SAMPLE_PEOPLE_H

#include <QList>
#include <QString>

namespace Sample {

//! Somebody whom the phone's owner knows. Nobody of them exists.
struct Person
{
    QString first;
    QString last;
    QString organization;
    QString number; //!< As the network writes it: "+12025550142".
    QString numberAsTyped; //!< As it stands in the address book.
    QString email;
};

//! The number of the phone's owner.
QString ownersNumber();

//! The people of the address book; they stay in this order.
const QList<Person> &people();

//! Who the \a index-th of any number of people is; the first ones are people().
Person person(int index);

} // namespace Sample

#endif
