#include <zr8bitkit/zr8bitchipiface.h>

namespace ZR {

ZR8BitChipIface::~ZR8BitChipIface() = default;

quint16 ZR8BitChipIface::stepAddress() const
{
    return programCounter();
}

} // namespace ZR
