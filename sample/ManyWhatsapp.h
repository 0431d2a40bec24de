#ifndef SAMPLE_MANYWHATSAPP_H
#define SAMPLE_MANYWHATSAPP_H

namespace Sample {

class Random;
class WhatsappDatabase;

//! Fills \a database with small talk: \a messages of them in \a chats, some of which are groups,
//! in the order of their dates.
void addManyWhatsapp(WhatsappDatabase &database, Random &random, int messages, int chats);

} // namespace Sample

#endif
