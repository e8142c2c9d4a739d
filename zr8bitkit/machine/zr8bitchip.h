#ifndef ZR8BITCHIP_H
#define ZR8BITCHIP_H

#include <zr8bitkit/zr8bitchipiface.h>

#include <memory>

namespace ZR {

struct ZR8BitChipCore;

/// What the complete processors of the kit do alike of ZR8BitChipIface. For the kit's own processors to
/// derive from: hosts use ZR8BitChipIface.
class ZR8BITKIT_EXPORT ZR8BitChip : public ZR8BitChipIface
{
public:
    ~ZR8BitChip() override;

    void setBus(ZR8BitBus *bus) override;
    ZR8BitBus *bus() const override;
    quint64 cycles() const override;
    void setIRQ(bool active) override;
    bool irq() const override;
    void triggerNMI() override;
    void setInterruptObserver(InterruptObserver observer) override;
    quint16 programCounter() const override;
    void setProgramCounter(quint16 address) override;
    bool isBusy() const override;
    QStringList registerIds() const override;
    int registerSize(const QString &id) const override;
    int registerValue(const QString &id) const override;
    bool setRegisterValue(const QString &id, int value) override;
    QByteArray saveState() const override;
    QList<Field> stateFields() const override;
    QString instructionText(quint16 address) override;

protected:
    /// core is the chip itself, which the kit keeps to itself.
    explicit ZR8BitChip(std::unique_ptr<ZR8BitChipCore> core);

    /// The failure of a step with neither a bus nor a main memory.
    static QString _noMemoryText();

    const std::unique_ptr<ZR8BitChipCore> _core; ///< never null
};

} // namespace ZR

#endif
