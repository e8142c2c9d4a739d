// The TVC's character code over all units and codes, listings in all forms, and sound with all that goes to
// the log.

#include <zr8bitlib/zr8bittvc.h>
#include <zr8bitlib/zr8bittvcsound.h>

#include <QtTest/QtTest>

using namespace Qt::StringLiterals;
using namespace ZR;

namespace {

/// From code 0x7F on: the unit that it decodes to, and the others that encode to it.
constexpr char codeTable[] =
    "C484|C1 C0 C2 C3 C4 C5 100 102 104|C9 C8 CA CB 112 114 116 118 11A|CD CC CE CF 128 12A 12C 12E 130|"
    "D3 D2|D6|150 D4 D5 14C 14E|DA D9|DC|170 DB 168 16A 16C 16E|CB98|C581|C2A4|C4BD|C59A|C2A7|C2A8|"
    "E1 E0 E2 E3 E4 E5 101 103 105|E9 E8 EA EB 113 115 117 119 11B|ED EC EE EF 129 12B 12D 12F 131|"
    "F3 F2|F6|151 F0 F4 F5 14D 14F|FA F9|FC|171 FB 169 16B 16D 16F|C5A0|C59E|C5A4|C5B9|C5BD|C5BB|C2B0";

constexpr char FormatFailure[] =
    "C @Invalid format: 'vx%1'! Format only contains v - voulume, p - pitch, d - duration characters!\n";
constexpr char EmptyFormat[] =
    "C @Empty format! At least one of v - volume, p - pitch, d - duration characters is needed!\n";

/// The messages of the log, as in "W text" and "C text", a line each.
QString logged;

void keepMessage(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (!context.file && context.line == 0 && !context.function)
        logged += (type == QtWarningMsg ? QLatin1String("W ") : QLatin1String("C ")) + text + u'\n';
}

} // namespace

class tst_TVC : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void characterSet()
    {
        QString units;
        for (int unit = 0; unit < 0x10000; ++unit)
            units += QChar(unit);
        QString decoded(0x100, u' ');
        QByteArray encoded(0x10000, ' ');
        for (int ascii = 0x20; ascii < 0x7F; ++ascii) {
            decoded[ascii] = QChar(ascii);
            encoded[ascii] = static_cast<char>(ascii);
        }
        int code = 0x7F;
        for (const QByteArray &row : QByteArray(codeTable).split('|')) {
            const QByteArrayList numbers = row.split(' ');
            decoded[code] = QChar(numbers.first().toInt(nullptr, 16));
            for (const QByteArray &number : numbers)
                encoded[number.toInt(nullptr, 16)] = static_cast<char>(code);
            ++code;
        }
        QCOMPARE(code, 0xA0);
        QCOMPARE(ZR8BitTVC::QStringToTVCStr(units), encoded);
        QByteArray codes;
        for (int byte = 0; byte < 0x100; ++byte)
            codes += static_cast<char>(byte);
        QCOMPARE(ZR8BitTVC::TVCStrToQString(codes), decoded);
    }

    void writeListing()
    {
        const QByteArray data = QByteArray::fromHex("000a63ffc8");
        QCOMPARE(ZR8BitTVC::BinToDB(data, false, false, 3), u"DB 0,10,99\rDB 255,200"_s);
        QCOMPARE(ZR8BitTVC::BinToDB(data, false, true, 5), u"DB 000,010,099,255,200"_s);
        QCOMPARE(ZR8BitTVC::BinToDB(data, true, false, -2), u"DB $0,$A,$63,$FF,$C8"_s);
        QCOMPARE(ZR8BitTVC::BinToDB(data, true, true, 2), u"DB $00,$0A\rDB $63,$FF\rDB $C8"_s);
        QCOMPARE(ZR8BitTVC::BinToDB(QByteArray(), true, true, 2), QString());
    }

    void readListing()
    {
        const struct
        {
            const char *listing;
            const char *bytes; // in hexadecimal, "!" behind them when the listing is bad
        } rows[] = {
            {"start DB 10, $1F,$C0 ; first\rdb 300,-1,\r; end", "0a1fc02cff"},
            {"dB\u00a01\u00a0,\n\u20032\u2003Db$100,", "010200"},
            {"DB ; nothing\rDB 1 ; one\rDB", "01"},
            {"$DB 1 DB $db,$DB;$DB", "dbdb"}, // a value, not a keyword
            {"DB $0x1F,+7, $ 5,0000000258", "1f070502"},
            {"DB 1,x,2", "01!"},
            {"DB 1,,2", "01!"},
            {"DB $", "!"},
            {"DB 1 ; a,b", "!"},
            {"DB 1 ; db x", "01!"},
            {"DB 1\rRET", "!"},
            {"DB 2147483648", "!"},
            {"DB $80000000", "!"},
            {"DB \u0661", "!"},
        };
        for (const auto &row : rows) {
            QByteArray bytes;
            const bool isGood = ZR8BitTVC::DBToBin(QString::fromUtf8(row.listing), bytes);
            QCOMPARE(row.listing + bytes.toHex() + (isGood ? "" : "!"), row.listing + QByteArray(row.bytes));
        }
    }

    void sound()
    {
        const bool isText = true; // the side that the input is on
        const bool isBin = false;
        const struct
        {
            bool side;
            const char *input; // bytes in hexadecimal; so is the output
            const char *format;
            const char *output;
            const char *messages = "";
            const char *separator = ",";
        } rows[] = {
            {isText, "15,1000,20,0,4095,255,240", "VPD", "0f03e814000ffffff0"},
            {isBin, "0f03e814000ffffff0", "VPD", "15,1000,020,00,4095,255,240"},
            {isText, ",,15 , 1000,,\u00a0+20\u00a0", "vpd", "0f03e814f0"},
            {isText, ",,", "v", "f0"},
            {isBin, "", "v", "240"},
            {isText, " 240 ", "", "f0"},
            {isBin, "f0", "", "240"},
            {isText, "1", "", "", EmptyFormat},
            {isBin, "01", "", "", EmptyFormat},
            {isText, "", "VX%1", "", FormatFailure},
            {isBin, "", "VX%1", "", FormatFailure},
            {isBin, "f0f0", "d", "240,240"},
            {isBin, "03f0", "p", "1008,240"}, // the last byte starts no field
            {isText, "123", "v", "010203f0", "", ""},
            {isText, "65551,65537,65536", "vpd", "0f000100f0"}, // only the low 16 bits count
            {isText, "-1,0,256,1,4096,1", "vpd", "0f0fffff010fff01f0",
             "W @Invalid volume value: 65535 on index: 0! Volume value must be 0-15.\n"
             "W @Invalid pitch value: 0 on index: 1! Pitch value must be 1-4095.\n"
             "W @Invalid duration value: 256 on index: 2! Duration value must be 0-255.\n"
             "W @Invalid pitch value: 4096 on index: 4! Pitch value must be 1-4095.\n"},
            {isText, "1,240", "vD", "",
             "C @Sound length: 1 and format: 'vd'does not match with seprator: ','!\n"},
            {isText, "1,2, ,x", "v", "0102", "C @Invalid data: ' ' on index: 2!\n"},
            {isText, "1,%2", "v", "", "C @Invalid data: '1,%2' on index: 0!\n", ", "},
            {isBin, "f010000000", "vp", "15,4095,00,",
             "W @Invalid volume value: 240 on index: 0! Volume value must be 0-15.\n"
             "W @Invalid pitch value: 4096 on index: 1! Pitch value must be 1-4095.\n"
             "C @Invalid input data or format! There is not enough data for pitch on idnex: 4!\n"},
            {isBin, "03e8f0", "pd", "1000,",
             "C @Invalid input data or format! Format index value is not 0.\n"},
        };
        for (const auto &row : rows) {
            const QLatin1String format(row.format);
            const QLatin1String separator(row.separator);
            QString text = separator; // which may be the very string that is replaced
            QByteArray bin("old");
            logged.clear();
            const QtMessageHandler before = qInstallMessageHandler(keepMessage);
            const bool isGood =
                row.side == isText
                    ? ZR8BitTVCSound::soundToBin(QString::fromUtf8(row.input), bin, format, separator)
                    : ZR8BitTVCSound::binToSound(QByteArray::fromHex(row.input), text, format, text);
            qInstallMessageHandler(before);
            logged.replace(row.side == isText ? u"ZR8BitTVCSound::soundToBin(): "_s
                                              : u"ZR8BitTVCSound::binToSound(): "_s,
                           u"@"_s);
            QCOMPARE(logged, QLatin1String(row.messages));
            QCOMPARE(isGood, !logged.contains(QLatin1String("C @")));
            QCOMPARE(row.side == isText ? QLatin1String(bin.toHex()) : text, QLatin1String(row.output));
        }
    }
};

QTEST_GUILESS_MAIN(tst_TVC)
#include "tst_tvc.moc"
