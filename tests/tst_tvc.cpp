// The TVC's character code over all units and codes, listings in all forms, and sound with all that goes to
// the log.

#include "testrows.h"

#include <zr8bitlib/zr8bittvc.h>
#include <zr8bitlib/zr8bittvcsound.h>

using namespace Qt::StringLiterals;
using namespace ZR;

namespace {

/// From code 0x7F on: the unit that it decodes to, and the others that encode to it.
const QByteArray codeTable =
    "C484|C1 C0 C2 C3 C4 C5 100 102 104|C9 C8 CA CB 112 114 116 118 11A|CD CC CE CF 128 12A 12C 12E 130|"
    "D3 D2|D6|150 D4 D5 14C 14E|DA D9|DC|170 DB 168 16A 16C 16E|CB98|C581|C2A4|C4BD|C59A|C2A7|C2A8|"
    "E1 E0 E2 E3 E4 E5 101 103 105|E9 E8 EA EB 113 115 117 119 11B|ED EC EE EF 129 12B 12D 12F 131|"
    "F3 F2|F6|151 F0 F4 F5 14D 14F|FA F9|FC|171 FB 169 16B 16D 16F|C5A0|C59E|C5A4|C5B9|C5BD|C5BB|C2B0";

/// The messages of the log, as in "W text" and "C text", after a stroke each.
QString logged;

void keepMessage(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    const bool hasNoPlace = !context.file && context.line == 0 && !context.function;
    if (hasNoPlace && QByteArray(context.category) == "default")
        logged += (type == QtWarningMsg ? u" / W "_s : u" / C "_s) + text;
}

} // namespace

class tst_TVC : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void characterSet()
    {
        QString units(0x10000, u' ');
        QString decoded(0x100, u' ');
        QByteArray encoded(0x10000, ' ');
        for (int unit = 0; unit < 0x10000; ++unit) {
            units[unit] = QChar(unit);
            if (unit > 0x20 && unit < 0x7F)
                decoded[unit] = QLatin1Char(encoded[unit] = static_cast<char>(unit));
        }
        int code = 0x7F;
        for (const QByteArray &row : codeTable.split('|')) {
            const QByteArrayList numbers = row.split(' ');
            decoded[code] = QChar(numbers.first().toInt(nullptr, 16));
            for (const QByteArray &number : numbers)
                encoded[number.toInt(nullptr, 16)] = static_cast<char>(code);
            ++code;
        }
        QCOMPARE(ZR8BitTVC::QStringToTVCStr(units), encoded);
        QCOMPARE(ZR8BitTVC::TVCStrToQString(units.first(0x100).toLatin1()), decoded);
    }

    void writeListing()
    {
        const QByteArray data = QByteArray::fromHex("000a63ffc8");
        QCOMPARE(ZR8BitTVC::BinToDB(data, false, false, 3), u"DB 0,10,99\rDB 255,200"_s);
        QCOMPARE(ZR8BitTVC::BinToDB(data, false, true, 5), u"DB 000,010,099,255,200"_s);
        QCOMPARE(ZR8BitTVC::BinToDB(data, true, false, -2), u"DB $0,$A,$63,$FF,$C8"_s);
        QCOMPARE(ZR8BitTVC::BinToDB(data, true, true, 2), u"DB $00,$0A\rDB $63,$FF\rDB $C8"_s);
    }

    void readListing_data() // "!" stands after the bytes of a listing that is bad
    {
        addRows(R"(
lines | start DB 10, $1F,$C0 ; first\rdb 300,-1,\r; end | 0a1fc02cff
white space | dB +1 ,\r $ 2 Db$100, | 010200
the value $DB | $DB 1 DB $db,$DB;$DB | dbdb
no digits | DB 1,$ | 01!
comma in a comment | DB 1 ; a,b | !
overflow | DB 2147483648 | !
other digits | DB ١ | !
)");
    }

    void readListing()
    {
        QFETCH(QStringList, fields);
        QByteArray bytes;
        const bool isGood = ZR8BitTVC::DBToBin(fields[0].replace(u"\\r"_s, u"\r"_s), bytes);
        QCOMPARE(QLatin1String(bytes.toHex()) + (isGood ? u""_s : u"!"_s), fields[1]);
    }

    // A text, or bytes after "$"; the format; the other side and the messages. The separator stands after
    // ":" where it is no comma.
    void sound_data()
    {
        addRows(R"(
text | 15,1000,20,0,4095,255,240 | VPD | 0f03e814000ffffff0
bytes | $0f03e814000ffffff0 | VPD | 15,1000,020,00,4095,255,240
end byte | $f0 |  | 240
no format | 1 |  |  / C @Empty format! At least one of v - volume, p - pitch, d - duration characters is needed!
bad format | $ | VX%1 |  / C @Invalid format: 'vx%1'! Format only contains v - voulume, p - pitch, d - duration characters!
end byte as data | $f0f0 | d | 240,240
end byte in a field | $03f0 | p | 1008,240
no separator | 123 | v: | 010203f0
low 16 bits | 65551,65537,65536 | vpd | 0f000100f0
bad volume | -1 | v | 0ff0 / W @Invalid volume value: 65535 on index: 0! Volume value must be 0-15.
bad pitch | 0 | p | 0ffff0 / W @Invalid pitch value: 0 on index: 0! Pitch value must be 1-4095.
bad duration | 1,256 | d | 01fff0 / W @Invalid duration value: 256 on index: 1! Duration value must be 0-255.
bad pitch byte | $001000 | vp | 00,4095,240 / W @Invalid pitch value: 4096 on index: 1! Pitch value must be 1-4095.
open record | 1,240 | vD |  / C @Sound length: 1 and format: 'vd'does not match with seprator: ','!
no number | , 1 ,,+2, ,%2 | v | 0102 / C @Invalid data: ' ' on index: 2!
half a pitch | $0000 | vp | 00, / C @Invalid input data or format! There is not enough data for pitch on idnex: 1!
open record of bytes | $03e8f0 | pd | 1000, / C @Invalid input data or format! Format index value is not 0.
)");
    }

    void sound()
    {
        QFETCH(QStringList, fields);
        const QString format = fields[1].section(u':', 0, 0);
        const QString separator = format == fields[1] ? u","_s : fields[1].section(u':', 1);
        const bool isBin = fields[0].startsWith(u'$');
        QString text = separator; // which may be the very string that is replaced
        QByteArray bin("old");
        logged.clear();
        const QtMessageHandler before = qInstallMessageHandler(keepMessage);
        const bool isGood = isBin ? ZR8BitTVCSound::binToSound(bytesOf(fields[0]), text, format, text)
                                  : ZR8BitTVCSound::soundToBin(fields[0], bin, format, separator);
        qInstallMessageHandler(before);
        QCOMPARE(isGood, !logged.contains(u" / C "_s));
        logged.replace(isBin ? u"ZR8BitTVCSound::binToSound(): "_s : u"ZR8BitTVCSound::soundToBin(): "_s,
                       u"@"_s);
        QCOMPARE((isBin ? text : QLatin1String(bin.toHex())) + logged, fields[2]);
    }
};

QTEST_GUILESS_MAIN(tst_TVC)
#include "tst_tvc.moc"
