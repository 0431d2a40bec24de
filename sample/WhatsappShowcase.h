#ifndef SAMPLE_WHATSAPPSHOWCASE_H
#define SAMPLE_WHATSAPPSHOWCASE_H

#include <QString>

namespace Sample {

class BackupWriter;
class Random;
class WhatsappDatabase;

//! The domain that the app keeps its chats and media in.
QString whatsappDomain();

//! Identifier of the group of walkers.
QString walkersGroup();

//! A few chats with every kind of message. Media go to \a writer.
void addWhatsappShowcase(WhatsappDatabase &database, BackupWriter &writer, Random &random);

} // namespace Sample

#endif
