#include <zr8bitkit/zr8bitchip.h>

#include "zr8bitchipcore_p.h"

#include <zr8bitkit/zr8bitdisassembler.h>
#include <zr8bitlib/zr8bitprocmos6510.h>

#include <utility>

namespace ZR {

ZR8BitChip::ZR8BitChip(std::unique_ptr<ZR8BitChipCore> core)
    : _core(std::move(core))
{
}

ZR8BitChip::~ZR8BitChip() = default;

void ZR8BitChip::setBus(ZR8BitBus *bus)
{
    _core->bus = bus;
}

ZR8BitBus *ZR8BitChip::bus() const
{
    return _core->bus;
}

quint64 ZR8BitChip::cycles() const
{
    return _core->cycles;
}

void ZR8BitChip::setIRQ(bool active)
{
    _core->irq = active;
}

bool ZR8BitChip::irq() const
{
    return _core->irq;
}

void ZR8BitChip::triggerNMI()
{
    _core->nmi = true;
}

void ZR8BitChip::setInterruptObserver(InterruptObserver observer)
{
    _core->observer = std::move(observer);
}

quint16 ZR8BitChip::programCounter() const
{
    return static_cast<quint16>(_core->programCounter());
}

void ZR8BitChip::setProgramCounter(quint16 address)
{
    _core->waitsAt = ZR8BitChipCore::Nowhere;
    _core->movePC(address);
}

bool ZR8BitChip::isBusy() const
{
    return _core->stepping || _core->busy;
}

QStringList ZR8BitChip::registerIds() const
{
    QStringList ids;
    for (const ZR8BitChipCore::View &view : _core->views)
        ids += QString::fromLatin1(view.id);
    return ids;
}

int ZR8BitChip::registerSize(const QString &id) const
{
    const ZR8BitChipCore::View *view = _core->view(id);
    return view ? view->bytes : 0;
}

int ZR8BitChip::registerValue(const QString &id) const
{
    const ZR8BitChipCore::View *view = _core->view(id);
    return view ? _core->value(*view) : -1;
}

bool ZR8BitChip::setRegisterValue(const QString &id, int value)
{
    const ZR8BitChipCore::View *view = _core->view(id);
    if (!view || value < 0 || value >> 8 * view->bytes != 0)
        return false;
    const ZR8BitChipCore::Snapshot before = _core->snapshot();
    _core->waitsAt = ZR8BitChipCore::Nowhere; // the loop may end by it
    _core->setValue(*view, value);
    _core->announceSince(before);
    return true;
}

QByteArray ZR8BitChip::saveState() const
{
    return _core->saveState();
}

QList<ZR8BitChipIface::Field> ZR8BitChip::stateFields() const
{
    return _core->stateFields();
}

QString ZR8BitChip::instructionText(quint16 address)
{
    const ZR8BitDisassembler disassembler(instructionSet());
    return disassembler
        .instruction([this](quint16 at) { return static_cast<quint8>(_core->read(at)); }, address)
        .text;
}

QString ZR8BitChip::_noMemoryText()
{
    return ZR8BitProcMOS6510::tr("Main memory must be defined!");
}

} // namespace ZR
