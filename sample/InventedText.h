#ifndef SAMPLE_INVENTEDTEXT_H
#define SAMPLE_INVENTEDTEXT_H

#include <QString>

namespace Sample {

class Random;

//! A number from the range that is kept free for stories.
QString inventedPhoneNumber(Random &random);

//! A sentence about boats and weather.
QString inventedSentence(Random &random);

//! Sentences, with line feeds between the paragraphs.
QString inventedText(Random &random, int paragraphs);

//! A table of tides as comma-separated values.
QString inventedTable(Random &random, int rows);

} // namespace Sample

#endif
