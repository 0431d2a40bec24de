#ifndef SAMPLE_POLLPAYLOAD_H
#define SAMPLE_POLLPAYLOAD_H

#include <QByteArray>
#include <QStringList>

namespace Sample {

//! What the app of polls stores in the message that asks \a title; options are known by their
//! texts.
QByteArray pollPayload(const QString &title, const QStringList &options);

//! What it stores in the row of a vote for \a options.
QByteArray votePayload(const QStringList &options);

} // namespace Sample

#endif
