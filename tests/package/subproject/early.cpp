// Conversions by a global object of a program, before main(): with the libraries linked in, none of their
// tables may wait for an initialisation of its own.

#include <zr8bitlib/zr8bittvc.h>
#include <zr8bitlib/zr8bittvccolor16.h>

const bool isRight = ZR::ZR8BitTVC::TVCStrToQString("\x80\x72") == u"\u00C1r" &&
                     ZR::ZR8BitTVC::QStringToTVCStr(QStringLiteral("\u00C1r")) == "\x80\x72" &&
                     ZR::ZR8BitTVCColor16::closestColor(QColor(250, 10, 10)) == QColor(Qt::red);

int main()
{
    return isRight ? 0 : 1;
}
