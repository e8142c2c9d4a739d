#include "zr8bitplainchip_p.h"

#include "mos6510text_p.h"

#include <zr8bitkit/zr8bitdisassembler.h>
#include <zr8bitlib/zr8bitprocbase.h>
#include <zr8bitlib/zr8bitram.h>
#include <zr8bitlib/zr8bitregister.h>

#include <QtCore/QtEndian>

namespace ZR {

PlainChip::PlainChip(ZR8BitProcBase &processor)
    : _processor(processor)
    , _programCounter(_register(QStringLiteral("PC")))
{
    const auto rows = processor.commandList();
    for (ZR8BitProcCommand *row : rows)
        connect(row, &ZR8BitProcCommand::execute, this, [this, row] { _cycles += row->cycleCnt(); });
}

quint16 PlainChip::programCounter() const
{
    return static_cast<quint16>(_programCounter->value());
}

void PlainChip::setProgramCounter(quint16 address)
{
    _programCounter->setValue(static_cast<short>(address));
}

QStringList PlainChip::registerIds() const
{
    return _processor.registers().keys();
}

int PlainChip::registerSize(const QString &id) const
{
    ZR8BitRegister *reg = _register(id);
    if (!reg)
        return 0;
    return reg->regType() == ZR8BitRegType16Bit ? 2 : 1;
}

int PlainChip::registerValue(const QString &id) const
{
    ZR8BitRegister *reg = _register(id);
    if (!reg)
        return -1;
    return reg->value() & (registerSize(id) == 2 ? 0xFFFF : 0xFF);
}

bool PlainChip::setRegisterValue(const QString &id, int value)
{
    ZR8BitRegister *reg = _register(id);
    if (!reg || value < 0 || value >> 8 * registerSize(id) != 0)
        return false;
    reg->setValue(static_cast<short>(value));
    return true;
}

QByteArray PlainChip::saveState() const
{
    QByteArray state;
    const QStringList ids = registerIds();
    for (const QString &id : ids) {
        const quint16 value = qToLittleEndian(static_cast<quint16>(registerValue(id)));
        state.append(reinterpret_cast<const char *>(&value), registerSize(id));
    }
    const quint64 cycles = qToLittleEndian(_cycles);
    return state.append(reinterpret_cast<const char *>(&cycles), sizeof cycles);
}

bool PlainChip::restoreState(const QByteArray &state)
{
    if (state.size() != saveState().size())
        return false;
    const auto *bytes = reinterpret_cast<const uchar *>(state.constData());
    const QStringList ids = registerIds();
    for (const QString &id : ids) {
        const int size = registerSize(id);
        setRegisterValue(id, size == 2 ? qFromLittleEndian<quint16>(bytes) : *bytes);
        bytes += size;
    }
    _cycles = qFromLittleEndian<quint64>(bytes);
    return true;
}

QList<ZR8BitChipIface::Field> PlainChip::stateFields() const
{
    QList<Field> fields;
    const QStringList ids = registerIds();
    for (const QString &id : ids)
        fields.append({id, registerSize(id)});
    fields.append({QStringLiteral("cycles"), sizeof _cycles});
    return fields;
}

ZR8BitInstructionSet PlainChip::instructionSet() const
{
    return ZR8BitInstructionSet::MOS6510Base;
}

QString PlainChip::instructionText(quint16 address)
{
    const QByteArray bytes = _processor.mainMemory()->value(address, 3);
    return ZR8BitDisassembler(instructionSet()).instruction(bytes, address).text;
}

QString PlainChip::stateHeading() const
{
    return MOS6510::stateHeading();
}

QString PlainChip::stateText() const
{
    const auto value = [this](const char *id) { return registerValue(QLatin1String(id)); };
    return MOS6510::stateText({value("AC"), value("XR"), value("YR"), value("SP")}, value("PS"));
}

ZR8BitRegister *PlainChip::_register(const QString &id) const
{
    return _processor.registers().value(id, nullptr);
}

} // namespace ZR
