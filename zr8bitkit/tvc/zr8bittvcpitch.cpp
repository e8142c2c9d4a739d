#include <zr8bitkit/zr8bittvcpitch.h>

#include "zr8bittvctoneplayer_p.h"
#include "zrfailure_p.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace ZR {

namespace {

constexpr double ConcertPitch = 440;
constexpr int ConcertNote = 57; // semitones from C0 to A4
constexpr int Semitones = 12;
constexpr int Octaves = 14;

} // namespace

double ZR8BitTVCPitch::frequency(int pitch)
{
    return pitch >= Lowest && pitch <= Highest ? DoubledClock / 2.0 / (Divisors - pitch) : 0;
}

int ZR8BitTVCPitch::nearest(double frequency)
{
    const double divisor = DoubledClock / 2.0 / frequency;
    if (!(divisor >= 1 && divisor < Divisors - 0.5))
        return 0;
    // By ratio the border between two divisors is their geometric mean.
    const auto below = static_cast<int>(divisor);
    const bool isNearerAbove = divisor * divisor > double(below) * (below + 1);
    return Divisors - std::min(below + int(isNearerAbove), Divisors - Lowest);
}

double ZR8BitTVCPitch::cents(double frequency, double reference)
{
    return 100 * Semitones * std::log2(frequency / reference);
}

double ZR8BitTVCPitch::noteFrequency(const QString &note)
{
    constexpr std::array<int, 7> SemitonesOfLetters = {9, 11, 0, 2, 4, 5, 7}; // from A to G
    const QChar letter = note.isEmpty() ? QChar() : note.front().toUpper();
    if (letter < u'A' || letter > u'G')
        return 0;
    int semitone = SemitonesOfLetters.at(static_cast<size_t>(letter.unicode() - u'A'));
    QStringView octave = QStringView(note).sliced(1);
    if (octave.startsWith(u'#') || octave.startsWith(u'b') || octave.startsWith(u'B')) {
        semitone += octave.front() == u'#' ? 1 : -1;
        octave = octave.sliced(1);
    }
    bool isNumber = false;
    const int number = octave.toInt(&isNumber);
    if (!isNumber || !octave.front().isDigit() || number >= Octaves)
        return 0;
    return ConcertPitch * std::exp2((number * Semitones + semitone - ConcertNote) / double(Semitones));
}

QString ZR8BitTVCPitch::nearestNote(double frequency)
{
    const double semitone = std::round(ConcertNote + Semitones * std::log2(frequency / ConcertPitch));
    if (!(semitone >= 0 && semitone < Octaves * Semitones))
        return {};
    const int place = static_cast<int>(semitone);
    const QString names = QStringLiteral("C C#D D#E F F#G G#A A#B ");
    return names.sliced(qsizetype(place) % Semitones * 2, 2).trimmed() + QString::number(place / Semitones);
}

int ZR8BitTVCPitch::ofNote(const QString &note, QString *error)
{
    const double frequency = noteFrequency(note);
    const int pitch = frequency > 0 ? nearest(frequency) : 0;
    if (pitch == 0)
        fail(error, QStringLiteral("'%1' is not a note from %2 to %3, such as A4, C#5 or Eb3.")
                        .arg(note, QStringLiteral("G1"), QStringLiteral("F#13")));
    return pitch;
}

} // namespace ZR
