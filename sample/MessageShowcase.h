#ifndef SAMPLE_MESSAGESHOWCASE_H
#define SAMPLE_MESSAGESHOWCASE_H

namespace Sample {

class BackupWriter;
class MessageDatabase;
class Random;

//! Adds a dozen conversations in which every kind of message occurs.
void addMessageShowcase(MessageDatabase &database, BackupWriter &writer, Random &random);

} // namespace Sample

#endif
