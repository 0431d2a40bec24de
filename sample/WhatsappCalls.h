#ifndef SAMPLE_WHATSAPPCALLS_H
#define SAMPLE_WHATSAPPCALLS_H

#include <QByteArray>

namespace Sample {

class BackupWriter;

//! The tables of WhatsApp's CallHistory.sqlite.
QByteArray whatsappCallTables();

//! A few calls with WhatsApp of every kind.
void addWhatsappCalls(BackupWriter &writer);

} // namespace Sample

#endif
