#include <zr8bitkit/zr8bitbus.h>

namespace ZR {

ZR8BitBus::~ZR8BitBus() = default;

quint8 ZR8BitBus::in(quint16)
{
    return 0xFF;
}

void ZR8BitBus::out(quint16, quint8) {}

} // namespace ZR
