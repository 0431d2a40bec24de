#ifndef SAMPLE_CONTACTSHOWCASE_H
#define SAMPLE_CONTACTSHOWCASE_H

namespace Sample {

class ContactDatabase;
class Random;

//! Adds what an address book can hold, each kind at least once. The first cards are people().
void addContactShowcase(ContactDatabase &database, Random &random);

} // namespace Sample

#endif
