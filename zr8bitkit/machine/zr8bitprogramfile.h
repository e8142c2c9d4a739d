#ifndef ZR8BITPROGRAMFILE_H
#define ZR8BITPROGRAMFILE_H

#include <zr8bitkit/zr8bitkit_export.h>

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QString>

#include <optional>

namespace ZR {

/// Programs in the files that assemblers and tapes bring.
///
///     QString error;
///     const auto program = ZR::ZR8BitProgramFile::read(content, u"game.prg"_s, &error);
///     if (!program)
///         qWarning("%s", qPrintable(error));
///
/// Keeps no state: may be used from any number of threads at once.
class ZR8BITKIT_EXPORT ZR8BitProgramFile
{
public:
    /// The forms of a program.
    enum class Format
    {
        Raw,     ///< the bytes alone; their address is not known
        Prg,     ///< two bytes with the address, the low one first, and the bytes that go there
        IntelHex ///< lines of addresses and bytes as base-16 digits, with checksums
    };

    /// Bytes that go to an address, and end at $FFFF at the latest.
    struct Segment
    {
        int address = 0;  ///< of the first byte
        QByteArray bytes; ///< what goes there
    };

    /// What a file holds. May grow at its end.
    struct Program
    {
        Format format = Format::Raw; ///< of the file
        QList<Segment> segments; ///< in the order of the file: the bytes of a later one go over earlier ones
    };

    /// Reads the content of a file. It is Intel HEX when it begins with a colon and has only colons, base-16
    /// digits and blanks; else its name tells the format: .hex and .ihx, .prg, or any other for raw bytes, in
    /// upper or lower case. Raw bytes are one segment at the address 0.
    ///
    /// Of Intel HEX the records 00, 01, 02 and 04 are obeyed, and 03 and 05, which tell where the program
    /// starts, are passed over. Nothing, with a sentence for a person in error, when the content is not of
    /// its format, or goes beyond 64 KiB; for Intel HEX it tells the line. error may be null.
    static std::optional<Program> read(const QByteArray &content, const QString &fileName,
                                       QString *error = nullptr);

    /// Takes the content for raw bytes that go to an address from 0 to $FFFF.
    static std::optional<Program> readRaw(const QByteArray &content, int address, QString *error = nullptr);
};

} // namespace ZR

#endif
