#ifndef SAMPLE_MANYMESSAGES_H
#define SAMPLE_MANYMESSAGES_H

namespace Sample {

class MessageDatabase;
class Random;

/*!
    \brief Adds \a messages in \a conversations, all of texts, in the order in which they were sent.

    Conversations are taken up and dropped as people do; a tenth of them has half of the messages.
    \par Memory
    Grows with the conversations alone.
*/
void addManyMessages(MessageDatabase &database, Random &random, int messages, int conversations);

} // namespace Sample

#endif
