#pragma once

// The processor of the library, as the machine knows processors. Private to the kit.

#include <zr8bitkit/zr8bitchipiface.h>

#include <QtCore/QObject>

namespace ZR {

class ZR8BitProcBase;
class ZR8BitRegister;

/// A processor that is no chip, as one: without a bus, a stack, interrupts and jumps. Its cycles are those of
/// its table.
class PlainChip : public QObject, public ZR8BitChipIface
{
    Q_OBJECT

public:
    /// processor is borrowed, and its init() has been called.
    explicit PlainChip(ZR8BitProcBase &processor);

    void setBus(ZR8BitBus *) override {}
    ZR8BitBus *bus() const override { return nullptr; }

    quint64 cycles() const override { return _cycles; }
    void reset() override {}
    void setIRQ(bool) override {}
    bool irq() const override { return false; }
    void triggerNMI() override {}
    void setInterruptObserver(InterruptObserver) override {}

    quint16 programCounter() const override;
    void setProgramCounter(quint16 address) override;
    quint16 stackPointer() const override { return 0; }
    void call(quint16 address) override { setProgramCounter(address); }
    bool isCallNext() override { return false; }
    bool isBusy() const override { return false; } // not known

    bool isWaiting() const override { return false; }
    bool acceptsIRQ() const override { return false; }
    bool isJammed() const override { return false; }
    quint64 wait(quint64) override { return 0; }

    QStringList registerIds() const override;
    int registerSize(const QString &id) const override;
    int registerValue(const QString &id) const override;
    bool setRegisterValue(const QString &id, int value) override;

    QByteArray saveState() const override;
    bool restoreState(const QByteArray &state) override;
    QList<Field> stateFields() const override;

    ZR8BitInstructionSet instructionSet() const override;
    QString instructionText(quint16 address) override;
    QString stateHeading() const override;
    QString stateText() const override;

private:
    ZR8BitRegister *_register(const QString &id) const;

    ZR8BitProcBase &_processor;
    ZR8BitRegister *_programCounter;
    quint64 _cycles = 0;
};

} // namespace ZR
