#ifndef ZRMOS6510PSREGISTER_H
#define ZRMOS6510PSREGISTER_H

#include <zr8bitlib/zr8bitregister.h>

namespace ZR {

/// The processor status register PS of the MOS 6510: an 8-bit register with a name for each flag.
///
/// | Bit  | 7 | 6 | 5    | 4 | 3 | 2 | 1 | 0 |
/// |------|---|---|------|---|---|---|---|---|
/// | Flag | N | V | none | B | D | I | Z | C |
///
/// Reading a flag gives 0 when it is clear and its mask when it is set, so it is to be compared with 0.
/// Writing 0 clears a flag and anything else sets it; the other bits stay, and onValueChanged() is not
/// emitted.
class ZR8BITLIB_EXPORT ZRMOS6510PSRegister : public ZR8BitRegister
{
    Q_OBJECT

public:
    /// A register without storage.
    explicit ZRMOS6510PSRegister(const QString &name = QString(), QObject *parent = nullptr);
    ~ZRMOS6510PSRegister() override;

    /// "ZRMOS6510PSRegister".
    static const QString className();

    /// As ZR8BitRegister::init(). Then sets bit 5, which is no flag; it stays set until setValue() or
    /// setLo() writes the register as a whole.
    bool init(const QString &id, const ZR8BitRegTypes &type, const int &address, ZR8BitRAM *memory) override;

    char N(); ///< Negative
    char V(); ///< Overflow
    char B(); ///< Break
    char D(); ///< Decimal mode
    char I(); ///< Interrupt disable
    char Z(); ///< Zero
    char C(); ///< Carry

    void setN(const char &value); ///< Negative
    void setV(const char &value); ///< Overflow
    void setB(const char &value); ///< Break
    void setD(const char &value); ///< Decimal mode
    void setI(const char &value); ///< Interrupt disable
    void setZ(const char &value); ///< Zero
    void setC(const char &value); ///< Carry
};

} // namespace ZR

#endif
