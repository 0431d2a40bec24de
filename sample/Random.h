#ifndef SAMPLE_RANDOM_H
#define SAMPLE_RANDOM_H

#include <QByteArray>
#include <QString>

#include <random>

namespace Sample {

/*!
    \brief Numbers that are the same for the same seed, with every compiler and on every machine.

    The distributions of the standard library are left to its makers; the engine's own output is
    not.
*/
class Random
{
public:
    //! A stream of its own for each \a topic: more of one kind of data leaves the others as they
    //! are.
    Random(quint64 seed, const char *topic);

    //! A number from 0 to \a limit - 1.
    int below(int limit);
    //! A number from \a low to \a high, both included.
    int between(int low, int high) { return low + below(high - low + 1); }
    //! A number from \a low up to \a high.
    double real(double low, double high);
    bool chance(int percent) { return below(100) < percent; }

    template <class List>
    const auto &pick(const List &list)
    {
        return list[static_cast<decltype(list.size())>(below(static_cast<int>(list.size())))];
    }

    QByteArray bytes(qsizetype sizeBytes);
    //! An identifier in the usual form of 8-4-4-4-12 digits.
    QString uuid();

private:
    std::mt19937_64 m_engine;
};

} // namespace Sample

#endif
